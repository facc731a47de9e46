#include "packer/WindowsModule.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "packer/FileError.h"
#include "packer/PortableExecutable.h"
#include "packer/WholeFile.h"
#include "platform/LittleEndian.h"
#include "support/BuiltFiles.h"

namespace quillon::test {
namespace {

using Bytes = std::vector<std::byte>;

Bytes BytesOf(std::string_view text) {
    const auto* const first = reinterpret_cast<const std::byte*>(text.data());
    return {first, first + text.size()};
}

std::string TextOf(std::span<const std::byte> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::uint32_t Word(const Bytes& file, std::size_t at) {
    return LoadLittle<std::uint32_t>(file, at);
}

void Put(Bytes& file, std::size_t at, std::uint32_t value) {
    StoreLittle(file, at, value);
}

// Positions in a module's file.
struct Headers {
    explicit Headers(const Bytes& file)
        : start(Word(file, 0x3C)),
          table(start + 24 + LoadLittle<std::uint16_t>(file, start + 20)),
          count(LoadLittle<std::uint16_t>(file, start + 6)) {}

    std::size_t section(std::size_t index) const { return table + 40 * index; }
    std::size_t directory(std::size_t index) const { return start + 136 + 8 * index; }

    std::size_t start, table, count;
};

// From where the headers say that they begin, to the end of the file.
std::string SymbolsOf(const Bytes& file) {
    const std::size_t position = Word(file, Headers(file).start + 12);
    return position == 0 ? "" : TextOf(std::span(file).subspan(position));
}

// What a strict loader asks of a module that ends with its resources.
void ExpectLoadable(const Bytes& file) {
    const Headers headers(file);
    std::size_t nextAddress = 0x1000, nextPosition = Word(file, headers.start + 84), dataBytes = 0;
    EXPECT_LE(headers.section(headers.count), nextPosition);
    for (std::size_t i = 0; i < headers.count; ++i) {
        const std::size_t entry = headers.section(i), fileBytes = Word(file, entry + 16);
        EXPECT_EQ(Word(file, entry + 12), nextAddress) << "no gap";
        nextAddress = (nextAddress + Word(file, entry + 8) + 0xFFF) & ~std::size_t{0xFFF};
        EXPECT_EQ(Word(file, entry + 20), nextPosition);
        nextPosition += fileBytes;
        EXPECT_EQ(fileBytes % 0x200, 0u);
        EXPECT_LE(nextPosition, file.size());
        if (Word(file, entry + 36) & 0x40) dataBytes += fileBytes;
    }
    const std::size_t last = headers.section(headers.count - 1);
    EXPECT_EQ(Word(file, headers.directory(2)), Word(file, last + 12)) << "resources are the last section";
    EXPECT_EQ(Word(file, headers.directory(2) + 4), Word(file, last + 8));
    EXPECT_LE(Word(file, last + 8), Word(file, last + 16));
    EXPECT_EQ(Word(file, last + 36) & 0x40000040, 0x40000040u) << "readable data";
    EXPECT_EQ(Word(file, headers.directory(4)), 0u) << "no signature";
    EXPECT_EQ(Word(file, headers.start + 80), nextAddress) << "size of the image";
    EXPECT_EQ(Word(file, headers.start + 32), dataBytes);

    Bytes padded = file;
    padded.resize((file.size() + 1) / 2 * 2);
    Put(padded, headers.start + 88, 0);
    std::uint32_t sum = 0;
    for (std::size_t at = 0; at < padded.size(); at += 2) {
        sum += LoadLittle<std::uint16_t>(padded, at);
        sum = (sum & 0xFFFF) + (sum >> 16);
    }
    EXPECT_EQ(Word(file, headers.start + 88), sum + file.size()) << "checksum";
}

TEST(WindowsModuleTest, CarriesBothAndKeepsWhatElseItHas) {
    const Bytes plain = ReadWholeFile(WindowsModule("plain")),
                relocations = ReadWholeFile(WindowsModule("relocations"));
    const Headers headers(relocations);
    Bytes zeroes = relocations, signedFile = plain;
    Put(zeroes, headers.section(headers.count - 1) + 8, 10000);
    Put(signedFile, Headers(plain).directory(4), static_cast<std::uint32_t>(plain.size()));
    Put(signedFile, Headers(plain).directory(4) + 4, 9);
    for (const char character : {'s', 'i', 'g', 'n', 'a', 't', 'u', 'r', 'e'})
        signedFile.push_back(static_cast<std::byte>(character));
    const struct {
        const char* name;
        Bytes file;
        bool hasOthers;  // resources that must stay
        std::size_t moreSections;
        std::string symbols{};
    } kRows[] = {
        {"resources at the end", ReadWholeFile(WindowsModule("resources")), true, 0},
        {"resources before relocations", relocations, true, 1},
        {"zeroes at the end", zeroes, true, 1},
        {"symbols", plain, false, 1, SymbolsOf(plain)},
        {"symbols and a signature", signedFile, false, 1, SymbolsOf(plain)},
    };
    const Bytes package(5001, std::byte{'p'}), description = BytesOf("description");
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.name);
        const Bytes module = MakeWindowsModule(row.file, package, description);
        ExpectLoadable(module);
        EXPECT_EQ(Headers(module).count, Headers(row.file).count + row.moreSections);
        EXPECT_EQ(TextOf(PackageOfWindowsModule(module)), TextOf(package));
        EXPECT_EQ(SymbolsOf(module), row.symbols);

        const Resources resources = PortableExecutable(module).resources();
        EXPECT_EQ(resources.size(), row.hasOthers ? 4u : 2u);
        EXPECT_EQ(TextOf(resources.at({u"PIPL", 16000u, 1033}).bytes), "description");
        if (row.hasOthers) {
            EXPECT_EQ(TextOf(resources.at({16u, 1u, 1031}).bytes), "de");
            EXPECT_EQ(resources.at({16u, 1u, 1031}).codePage, 1252u);
            EXPECT_EQ(TextOf(resources.at({16u, 1u, 1033}).bytes), "en");
        }

        for (const std::size_t size : {0, 3, 5001, 70000}) {
            const Bytes other(size, std::byte{'o'});
            EXPECT_EQ(MakeWindowsModule(module, other, description), MakeWindowsModule(row.file, other, description))
                << size;
        }
        EXPECT_TRUE(MakeWindowsModule(module, package, {}) == module) << "without a description the old one stays";
    }
}

TEST(WindowsModuleTest, RefusesWhatIsDamagedInWords) {
    const Bytes sound = ReadWholeFile(WindowsModule("resources"));
    const Headers headers(sound);
    const std::size_t tree = Word(sound, headers.section(headers.count - 1) + 20);
    const struct {
        const char* what;
        std::size_t at;
        std::uint32_t value;
        std::size_t bytes;
        const char* words;
    } kRows[] = {
        {"no signature", headers.start, 0, 4, "headers are not there"},
        {"no sections", headers.start + 6, 0, 2, "no sections"},
        {"sections swapped", headers.table + 12, 0x3000, 4, "out of order"},
        {"a directory's own parent", tree + 0x3C + 16, 0x80000000, 4, "resource directory"},
        {"a leaf among types", tree + 0x14, 0x88, 4, "another form"},
        {"no end of entries", tree + 0x0E, 0xFFFF, 2, "more entries"},
    };
    for (const auto& row : kRows) {
        Bytes file = sound;
        for (std::size_t i = 0; i < row.bytes; ++i) file.at(row.at + i) = static_cast<std::byte>(row.value >> (8 * i));
        try {
            MakeWindowsModule(file, BytesOf("package"), {});
            ADD_FAILURE() << row.what << " was taken";
        } catch (const FileError& error) {
            EXPECT_THAT(error.fault, ::testing::HasSubstr(row.words)) << row.what;
        }
    }
}

// For the sanitizers: any file is taken or refused.
TEST(WindowsModuleTest, SurvivesEveryCutAndEveryWrongByte) {
    int taken = 0;
    const auto attempt = [&taken](const Bytes& file) {
        try {
            taken += MakeWindowsModule(file, BytesOf("package"), {}).empty() ? 0 : 1;
        } catch (const FileError&) {
        }
    };
    for (const char* name : {"plain", "resources", "relocations"}) {
        const Bytes sound = ReadWholeFile(WindowsModule(name));
        for (std::size_t at = 0; at < sound.size(); ++at) {
            attempt({sound.begin(), sound.begin() + static_cast<std::ptrdiff_t>(at)});
            for (const int change : {0x01, 0x80, 0xFF}) {
                Bytes file = sound;
                file[at] ^= static_cast<std::byte>(change);
                attempt(file);
            }
        }
    }
    EXPECT_GT(taken, 0);
}

TEST(WindowsModuleTest, NeedsRoomInHeadersAndAddressSpace) {
    const Bytes plain = ReadWholeFile(WindowsModule("plain"));
    const Headers headers(plain);
    Bytes taken = plain, full = plain;
    taken[headers.section(headers.count) + 39] = std::byte{1};  // where the new header would end
    Put(full, headers.start + 84, static_cast<std::uint32_t>(headers.section(headers.count) + 39));
    for (const Bytes& file : {taken, full}) EXPECT_THROW(MakeWindowsModule(file, {}, {}), FileError);
    Put(full, headers.start + 84, static_cast<std::uint32_t>(headers.section(headers.count) + 40));
    EXPECT_NO_THROW(MakeWindowsModule(full, {}, {}));

    const Bytes megabyte(1 << 20);
    Resources resources;
    for (std::uint32_t i = 0; i < 2048; ++i) resources[{1u, i, 0}] = {megabyte};
    EXPECT_THROW(PortableExecutable(plain).withResources(resources), FileError);
}

}  // namespace
}  // namespace quillon::test
