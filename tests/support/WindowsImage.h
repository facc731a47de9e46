#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace quillon::test {

// A small Windows module, field by field: headers of 1024 bytes at most, a section of code, and what a test adds.
struct WindowsImage {
    struct Section {
        std::string name;
        std::vector<std::byte> content;
        std::int32_t bssBytes = 0;  // in memory, behind the content; negative: so much of it is not in memory
    };

    std::vector<Section> sections = {{".text", std::vector<std::byte>(700, std::byte{0xC3})}};
    std::uint32_t headerBytes = 0x400;
    int resourceSection = -1;  // index; -1: no resources
    std::string overlay = {};  // behind the sections
    bool hasSymbols = false;   // the overlay is the symbol table
    bool isSigned = false;     // the last 8 bytes of the overlay are the signature

    std::vector<std::byte> bytes() const;
};

// The address of a section in memory, when those before it take less than a page each.
constexpr std::uint32_t AddressOf(int section) {
    return 0x1000u * static_cast<std::uint32_t>(section + 1);
}

// A resource section for this address: "BLOB" of type 10 ("old", 1031), and 1 of type 16 ("de", 1031, and "en", 1033).
std::vector<std::byte> OldResources(std::uint32_t address);

// Fails the test where a strict loader would refuse the file, and when the checksum is wrong.
void ExpectLoadable(const std::vector<std::byte>& file);

std::uint32_t NumberAt(const std::vector<std::byte>& file, std::size_t position, std::size_t bytes = 4);
void PutNumber(std::vector<std::byte>& file, std::size_t position, std::uint32_t value, std::size_t bytes = 4);

}  // namespace quillon::test
