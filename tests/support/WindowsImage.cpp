#include "support/WindowsImage.h"

#include <gtest/gtest.h>

namespace quillon::test {

namespace {

constexpr std::size_t kHeader = 0x80, kTable = 0x188;

std::size_t Padded(std::size_t size, std::size_t alignment) {
    return (size + alignment - 1) / alignment * alignment;
}

}  // namespace

std::uint32_t NumberAt(const std::vector<std::byte>& file, std::size_t position, std::size_t bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = bytes; i-- > 0;) value = value << 8 | std::to_integer<std::uint32_t>(file.at(position + i));
    return value;
}

void PutNumber(std::vector<std::byte>& file, std::size_t position, std::uint32_t value, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i) file.at(position + i) = static_cast<std::byte>(value >> (8 * i));
}

std::vector<std::byte> WindowsImage::bytes() const {
    std::vector<std::byte> file(headerBytes);
    PutNumber(file, 0, 0x5A4D, 2);
    PutNumber(file, 0x3C, kHeader);
    PutNumber(file, kHeader, 0x4550);
    PutNumber(file, kHeader + 4, 0x8664, 2);
    PutNumber(file, kHeader + 6, static_cast<std::uint32_t>(sections.size()), 2);
    PutNumber(file, kHeader + 20, 0xF0, 2);
    PutNumber(file, kHeader + 24, 0x20B, 2);
    PutNumber(file, kHeader + 56, 0x1000);
    PutNumber(file, kHeader + 60, 0x200);
    PutNumber(file, kHeader + 84, headerBytes);
    PutNumber(file, kHeader + 132, 16);
    std::size_t address = 0x1000;
    for (std::size_t i = 0; i < sections.size(); ++i) {
        const auto& [name, content, bssBytes] = sections[i];
        const std::size_t entry = kTable + 40 * i, position = file.size(),
                          imageBytes = content.size() + static_cast<std::size_t>(bssBytes);
        for (std::size_t c = 0; c < name.size(); ++c) file[entry + c] = static_cast<std::byte>(name[c]);
        PutNumber(file, entry + 8, static_cast<std::uint32_t>(imageBytes));
        PutNumber(file, entry + 12, static_cast<std::uint32_t>(address));
        PutNumber(file, entry + 16, static_cast<std::uint32_t>(Padded(content.size(), 0x200)));
        PutNumber(file, entry + 20, static_cast<std::uint32_t>(position));
        PutNumber(file, entry + 36, i == 0 ? 0x60000020 : 0x40000040);
        if (static_cast<int>(i) == resourceSection) {
            PutNumber(file, kHeader + 152, static_cast<std::uint32_t>(address));
            PutNumber(file, kHeader + 156, static_cast<std::uint32_t>(content.size()));
        }
        file.insert(file.end(), content.begin(), content.end());
        file.resize(Padded(file.size(), 0x200));
        address += Padded(imageBytes, 0x1000);
    }
    PutNumber(file, kHeader + 80, static_cast<std::uint32_t>(address));
    if (hasSymbols) PutNumber(file, kHeader + 12, static_cast<std::uint32_t>(file.size()));
    for (const char character : overlay) file.push_back(static_cast<std::byte>(character));
    if (isSigned) {
        PutNumber(file, kHeader + 168, static_cast<std::uint32_t>(file.size() - 8));
        PutNumber(file, kHeader + 172, 8);
    }
    return file;
}

std::vector<std::byte> OldResources(std::uint32_t address) {
    constexpr std::uint32_t kDown = 0x80000000;
    const std::uint32_t words[] = {0,
                                   0,
                                   0,
                                   2u << 16,
                                   10,
                                   kDown | 0x20,
                                   16,
                                   kDown | 0x38,  // 0x00: types
                                   0,
                                   0,
                                   0,
                                   1,
                                   kDown | 0xB8,
                                   kDown | 0x50,  // 0x20: names of 10
                                   0,
                                   0,
                                   0,
                                   1u << 16,
                                   1,
                                   kDown | 0x68,  // 0x38: names of 16
                                   0,
                                   0,
                                   0,
                                   1u << 16,
                                   1031,
                                   0x88,  // 0x50: languages of "BLOB"
                                   0,
                                   0,
                                   0,
                                   2u << 16,
                                   1031,
                                   0x98,
                                   1033,
                                   0xA8,  // 0x68: languages of 1
                                   address + 0xC4,
                                   3,
                                   0,
                                   0,
                                   address + 0xC8,
                                   2,
                                   1252,
                                   0,
                                   address + 0xCC,
                                   2,
                                   0,
                                   0,  // 0x88: data
                                   'B' << 16 | 4,
                                   'O' << 16 | 'L',
                                   'B',  // 0xB8: text
                                   'd' << 16 | 'l' << 8 | 'o',
                                   'e' << 8 | 'd',
                                   'n' << 8 | 'e'};  // 0xC4
    std::vector<std::byte> section(sizeof(words));
    for (std::size_t i = 0; i < std::size(words); ++i) PutNumber(section, 4 * i, words[i]);
    return section;
}

void ExpectLoadable(const std::vector<std::byte>& file) {
    const std::size_t count = NumberAt(file, kHeader + 6, 2);
    std::size_t nextAddress = 0x1000, nextPosition = NumberAt(file, kHeader + 84), dataBytes = 0;
    EXPECT_LE(kTable + 40 * count, nextPosition);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t entry = kTable + 40 * i, fileBytes = NumberAt(file, entry + 16);
        EXPECT_EQ(NumberAt(file, entry + 12), nextAddress) << "no gap";
        nextAddress = Padded(nextAddress + NumberAt(file, entry + 8), 0x1000);
        EXPECT_EQ(NumberAt(file, entry + 20), nextPosition);
        nextPosition += fileBytes;
        EXPECT_EQ(fileBytes % 0x200, 0u);
        EXPECT_LE(nextPosition, file.size());
        if (NumberAt(file, entry + 36) & 0x40) dataBytes += fileBytes;
        if (i == count - 1) {
            EXPECT_EQ(NumberAt(file, kHeader + 152), NumberAt(file, entry + 12)) << "resources are the last section";
            EXPECT_EQ(NumberAt(file, kHeader + 156), NumberAt(file, entry + 8));
            EXPECT_LE(NumberAt(file, entry + 8), fileBytes);
            EXPECT_EQ(NumberAt(file, entry + 36), 0x40000040u);
        }
    }
    EXPECT_EQ(NumberAt(file, kHeader + 80), nextAddress) << "size of the image";
    EXPECT_EQ(NumberAt(file, kHeader + 32), dataBytes);

    std::uint32_t sum = 0;
    for (std::size_t at = 0; at < file.size(); at += 2) {
        if (at != kHeader + 88 && at != kHeader + 90)
            sum += NumberAt(file, at, std::min<std::size_t>(2, file.size() - at));
        sum = (sum & 0xFFFF) + (sum >> 16);
    }
    EXPECT_EQ(NumberAt(file, kHeader + 88), sum + file.size()) << "checksum";
}

}  // namespace quillon::test
