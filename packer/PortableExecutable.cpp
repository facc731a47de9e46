#include "packer/PortableExecutable.h"

#include <algorithm>
#include <bit>
#include <string>
#include <string_view>

#include "packer/FileError.h"
#include "packer/PortableExecutableRecords.h"
#include "packer/ResourceDirectory.h"
#include "platform/LittleEndian.h"

namespace quillon {

namespace {

constexpr std::uint16_t kAmd64 = 0x8664;
constexpr std::uint16_t kPe32Plus = 0x20B;
constexpr std::uint32_t kMostAlignment = 1 << 16;

[[noreturn]] void Fail(const std::string& why) {
    throw FileError("", "not a valid 64-bit Windows module: " + why, "use another one");
}

bool StartsWith(std::span<const std::byte> bytes, std::string_view text) {
    return bytes.size() >= text.size() &&
           std::equal(text.begin(), text.end(), bytes.begin(),
                      [](char character, std::byte byte) { return static_cast<std::byte>(character) == byte; });
}

}  // namespace

bool IsPortableExecutable(std::span<const std::byte> file) {
    return StartsWith(file, "MZ");
}

PortableExecutable::PortableExecutable(std::span<const std::byte> fileBytes) : file(fileBytes) {
    header = number(pe::kHeaderPosition);
    const auto fixed = bytesAt(header, pe::kDirectories);
    if (!IsPortableExecutable(file) || !StartsWith(fixed, std::string_view("PE\0\0", 4)))
        Fail("its headers are not there");
    if (LoadLittle<std::uint16_t>(fixed, pe::kMachine) != kAmd64 ||
        LoadLittle<std::uint16_t>(fixed, pe::kOptional) != kPe32Plus)
        Fail("it is for another machine");
    const std::size_t optionalBytes = LoadLittle<std::uint16_t>(fixed, pe::kOptionalBytes);
    sectionTable = header + pe::kOptional + optionalBytes;
    directories = std::min<std::size_t>(number(header + pe::kDirectoryCount), pe::kKnownDirectories);
    if (pe::kOptional + optionalBytes < pe::kDirectories + 8 * directories || directories <= pe::kResourceDirectory)
        Fail("its headers have no place for resources");

    sectionAlignment = number(header + pe::kSectionAlignment);
    fileAlignment = number(header + pe::kFileAlignment);
    if (!std::has_single_bit(sectionAlignment) || !std::has_single_bit(fileAlignment) || fileAlignment < 512 ||
        fileAlignment > sectionAlignment || sectionAlignment > kMostAlignment)
        Fail("its sections are aligned oddly");
    readSections(sectionTable, LoadLittle<std::uint16_t>(fixed, pe::kSectionCount));
}

std::span<const std::byte> PortableExecutable::bytesAt(std::size_t position, std::size_t size) const {
    if (position > file.size() || size > file.size() - position) Fail("it is cut off");
    return file.subspan(position, size);
}

std::uint32_t PortableExecutable::number(std::size_t position) const {
    return LoadLittle<std::uint32_t>(bytesAt(position, 4), 0);
}

void PortableExecutable::readSections(std::size_t table, std::size_t count) {
    if (count == 0 || count > pe::kMostSections) Fail("it has no sections or too many");
    const std::uint32_t headerBytes = number(header + pe::kHeaderBytes);
    bytesAt(0, headerBytes);
    if (table + count * pe::kSectionHeaderBytes > headerBytes) Fail("its headers are longer than they say");
    overlay = headerBytes;
    std::uint64_t nextAddress = headerBytes;
    for (std::size_t i = 0; i < count; ++i) {
        const auto entry = bytesAt(table + i * pe::kSectionHeaderBytes, pe::kSectionHeaderBytes);
        Section section{.address = LoadLittle<std::uint32_t>(entry, pe::kSectionAddress),
                        .imageBytes = LoadLittle<std::uint32_t>(entry, pe::kSectionImageBytes),
                        .position = LoadLittle<std::uint32_t>(entry, pe::kSectionPosition),
                        .fileBytes = LoadLittle<std::uint32_t>(entry, pe::kSectionFileBytes),
                        .mappedBytes = 0,
                        .flags = LoadLittle<std::uint32_t>(entry, pe::kSectionFlags),
                        .isNamedForResources = StartsWith(entry, std::string_view(".rsrc\0\0\0", 8))};
        if (section.position == 0 || section.fileBytes == 0) section.position = section.fileBytes = 0;
        if (section.imageBytes == 0) section.imageBytes = section.fileBytes;
        bytesAt(section.position, section.fileBytes);
        section.mappedBytes = static_cast<std::uint32_t>(
            std::min<std::uint64_t>(section.fileBytes, AlignUp(section.imageBytes, sectionAlignment)));
        if (section.address % sectionAlignment != 0 || section.address < nextAddress)
            Fail("its sections are out of order");
        nextAddress = std::uint64_t{section.address} + section.imageBytes;
        overlay = std::max(overlay, std::size_t{section.position} + section.fileBytes);
        sections.push_back(section);
    }
}

PortableExecutable::DataDirectory PortableExecutable::directory(std::size_t index) const {
    if (index >= directories) return {};
    const std::size_t position = header + pe::kDirectories + 8 * index;
    return {number(position), number(position + 4)};
}

const PortableExecutable::Section* PortableExecutable::sectionAt(std::uint32_t address) const {
    const auto found = std::ranges::find_if(sections, [address](const Section& section) {
        return address >= section.address && address - section.address < section.mappedBytes;
    });
    return found == sections.end() ? nullptr : &*found;
}

std::span<const std::byte> PortableExecutable::imageBytes(std::uint32_t address, std::uint32_t size) const {
    if (size == 0) return {};
    const Section* section = sectionAt(address);
    if (!section || size > section->mappedBytes - (address - section->address))
        Fail("its resources lie outside of its sections");
    return file.subspan(section->position + std::size_t{address - section->address}, size);
}

Resources PortableExecutable::resources() const {
    const DataDirectory found = directory(pe::kResourceDirectory);
    if (found.address == 0) return {};
    const Section* section = sectionAt(found.address);
    if (!section) Fail("its resources lie outside of its sections");
    const std::uint32_t start = found.address - section->address;
    return ReadResourceDirectory(
        file.subspan(std::size_t{section->position} + start, section->mappedBytes - start),
        [this](std::uint32_t address, std::uint32_t size) { return imageBytes(address, size); });
}

}  // namespace quillon
