#include "packer/WindowsModule.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "packer/FileError.h"
#include "packer/PortableExecutable.h"
#include "support/WindowsImage.h"

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

WindowsImage WithResources(int section, WindowsImage image = {}) {
    image.resourceSection = section;
    image.sections.insert(image.sections.begin() + section, {".rsrc", OldResources(AddressOf(section))});
    return image;
}

WindowsImage WithRelocations() {
    WindowsImage image;
    image.sections.push_back({".reloc", Bytes(12)});
    return image;
}

struct Template {
    const char* name;
    WindowsImage image;
    bool hasOthers;            // resources that must stay
    std::string overlay = "";  // what is left of it
    std::size_t moreSections = 1;
};

const Template kTemplates[] = {
    {"bare", {}, false},
    {"zeroes_at_the_end", {.sections = {{".data", Bytes(10), 10000}}}, false},
    {"more_in_the_file_than_in_memory", {.sections = {{".data", Bytes(10000), -9000}}}, false},
    {"resources_at_the_end", WithResources(1), true, "", 0},
    {"resources_before_relocations", WithResources(1, WithRelocations()), true},
    {"symbols", WithResources(1, {.overlay = "symbol table", .hasSymbols = true}), true, "symbol table", 0},
    {"symbols_and_signature",
     {.overlay = "symbols!signature", .hasSymbols = true, .isSigned = true},
     false,
     "symbols!s"},
};

class WindowsModule : public ::testing::TestWithParam<Template> {};

TEST_P(WindowsModule, CarriesBothAndKeepsWhatElseItHas) {
    const Template& row = GetParam();
    const Bytes file = row.image.bytes();
    const Bytes package = BytesOf(std::string(5001, 'p')), description = BytesOf("description");
    const Bytes module = MakeWindowsModule(file, package, description);
    ExpectLoadable(module);
    EXPECT_EQ(NumberAt(module, 0x86, 2), row.image.sections.size() + row.moreSections);
    EXPECT_EQ(TextOf(PackageOfWindowsModule(module)), TextOf(package));

    const Resources resources = PortableExecutable(module).resources();
    EXPECT_EQ(resources.size(), row.hasOthers ? 4u : 2u);
    EXPECT_EQ(TextOf(resources.at({u"PIPL", 16000u, 1033}).bytes), "description");
    if (row.hasOthers) {
        EXPECT_EQ(TextOf(resources.at({16u, 1u, 1031}).bytes), "de");
        EXPECT_EQ(resources.at({16u, 1u, 1031}).codePage, 1252u);
        EXPECT_EQ(TextOf(resources.at({16u, 1u, 1033}).bytes), "en");
    }
    EXPECT_TRUE(TextOf(module).ends_with(row.overlay));
    EXPECT_EQ(NumberAt(module, 0x8C), row.image.hasSymbols ? module.size() - row.overlay.size() : 0) << "symbols";
    EXPECT_EQ(NumberAt(module, 0x80 + 172), 0u) << "signature";

    for (const std::size_t size : {0, 3, 5001, 70000}) {
        const Bytes other = BytesOf(std::string(size, 'o'));
        EXPECT_EQ(MakeWindowsModule(module, other, description), MakeWindowsModule(file, other, description)) << size;
    }
    EXPECT_TRUE(MakeWindowsModule(module, package, {}) == module) << "without a description the old one stays";
}
INSTANTIATE_TEST_SUITE_P(Templates, WindowsModule, ::testing::ValuesIn(kTemplates),
                         [](const auto& row) { return std::string(row.param.name); });

struct Refusal {
    const char* what;
    std::function<void(Bytes& file)> spoil;
    const char* words;
};

// Positions in the file of WithResources(1): headers from 0x80, section table from 0x188, resources from 0x800.
const Refusal kRefusals[] = {
    {"cut in the headers", [](Bytes& file) { file.resize(0x100); }, "is cut off"},
    {"no signature", [](Bytes& file) { PutNumber(file, 0x80, 0); }, "headers are not there"},
    {"32 bits", [](Bytes& file) { PutNumber(file, 0x98, 0x10B, 2); }, "another machine"},
    {"no sections", [](Bytes& file) { PutNumber(file, 0x86, 0, 2); }, "no sections"},
    {"two directories", [](Bytes& file) { PutNumber(file, 0x104, 2); }, "no place for resources"},
    {"sections swapped", [](Bytes& file) { PutNumber(file, 0x188 + 12, 0x3000); }, "out of order"},
    {"data nowhere", [](Bytes& file) { PutNumber(file, 0x888, 0x21FF); }, "outside of its sections"},
    {"a directory's own parent", [](Bytes& file) { PutNumber(file, 0x83C + 16, 0x80000000); }, "resource directory"},
    {"a leaf among types", [](Bytes& file) { PutNumber(file, 0x814, 0x88); }, "another form"},
    {"no end of entries", [](Bytes& file) { PutNumber(file, 0x80E, 0xFFFF, 2); }, "more entries"},
    {"text outside", [](Bytes& file) { PutNumber(file, 0x8B8, 0x7FFF, 2); }, "reaches outside"},
};

TEST(WindowsModuleTest, RefusesWhatIsDamagedInWords) {
    for (const Refusal& row : kRefusals) {
        Bytes file = WithResources(1).bytes();
        row.spoil(file);
        try {
            MakeWindowsModule(file, BytesOf("package"), {});
            ADD_FAILURE() << row.what << " was taken";
        } catch (const FileError& error) {
            EXPECT_THAT(error.what(), ::testing::HasSubstr(row.words)) << row.what;
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
    for (const WindowsImage& image : {WithResources(1, {.overlay = "symbols", .hasSymbols = true, .isSigned = true}),
                                      WithResources(1, WithRelocations())}) {
        const Bytes sound = image.bytes();
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
    WindowsImage full = {.headerBytes = 0x200};  // room for three sections
    full.sections.push_back({".data", Bytes(1)});
    EXPECT_NO_THROW(MakeWindowsModule(full.bytes(), {}, {}));
    Bytes bound = full.bytes();
    bound[0x1E0] = std::byte{1};  // where the new header would be
    full.sections.push_back({".reloc", Bytes(1)});
    for (const Bytes& file : {bound, full.bytes()}) {
        EXPECT_THROW(MakeWindowsModule(file, {}, {}), FileError);
    }

    const Bytes megabyte(1 << 20);
    Resources resources;
    for (std::uint32_t i = 0; i < 2048; ++i) resources[{1u, i, 0}] = {megabyte};
    const Bytes file = WindowsImage().bytes();
    EXPECT_THROW(PortableExecutable(file).withResources(resources), FileError);
}

}  // namespace
}  // namespace quillon::test
