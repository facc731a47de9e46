// Puts resources into a Windows module: sections, headers and checksum.

#include <algorithm>
#include <string_view>

#include "packer/FileError.h"
#include "packer/PortableExecutable.h"
#include "packer/PortableExecutableRecords.h"
#include "packer/ResourceDirectory.h"
#include "platform/LittleEndian.h"

namespace quillon {

namespace {

constexpr std::uint64_t kMostBytes = 0x7FFFFFFF;  // of the file, and of the image in memory

// The sum of the file's 16-bit words, carries added in again, and its length. The field of the sum itself holds 0.
std::uint32_t ChecksumOf(std::span<const std::byte> file) {
    std::uint64_t sum = 0;
    for (std::size_t at = 0; at + 1 < file.size(); at += 2) sum += LoadLittle<std::uint16_t>(file, at);
    if (file.size() % 2 != 0) sum += std::to_integer<std::uint64_t>(file.back());
    while (sum > 0xFFFF) sum = (sum & 0xFFFF) + (sum >> 16);
    return static_cast<std::uint32_t>(sum + file.size());
}

}  // namespace

// Where the resource section goes.
struct PortableExecutable::Placement {
    std::size_t index;      // in the section table
    std::uint64_t address;  // in the loaded image
    std::uint64_t position;
    std::size_t copiedBytes;  // of the file before it
};

// Only a section that holds nothing but the resources, and is the last in memory and in the file, can change its size.
bool PortableExecutable::endsWithResources() const {
    const Section& last = sections.back();
    if (directory(pe::kResourceDirectory).address != last.address || !last.isNamedForResources) return false;
    if (last.position % fileAlignment != 0 || last.position < number(header + pe::kHeaderBytes)) return false;
    for (std::size_t i = 0; i < directories; ++i) {
        const DataDirectory other = directory(i);
        const bool isMapped = i != pe::kCertificateDirectory && other.size != 0;
        if (i != pe::kResourceDirectory && isMapped && other.address >= last.address) return false;
    }
    return std::all_of(sections.begin(), sections.end() - 1, [&last](const Section& section) {
        return section.fileBytes == 0 || std::uint64_t{section.position} + section.fileBytes <= last.position;
    });
}

PortableExecutable::Placement PortableExecutable::placeResources() const {
    const Section& last = sections.back();
    if (endsWithResources()) return {sections.size() - 1, last.address, last.position, last.position};

    // The new header needs room between the table and what follows the headers, room that nothing else has taken.
    const std::size_t newHeader = sectionTable + sections.size() * pe::kSectionHeaderBytes;
    std::uint64_t headersEnd = number(header + pe::kHeaderBytes);
    for (const Section& section : sections)
        if (section.fileBytes != 0) headersEnd = std::min<std::uint64_t>(headersEnd, section.position);
    const bool hasRoom = sections.size() < pe::kMostSections && newHeader + pe::kSectionHeaderBytes <= headersEnd &&
                         std::ranges::all_of(bytesAt(newHeader, pe::kSectionHeaderBytes),
                                             [](std::byte byte) { return byte == std::byte{}; });
    if (!hasRoom)
        throw FileError("", "its headers have no room for one more section",
                        "link the module with a .rsrc section at its end");
    return {sections.size(), AlignUp(std::uint64_t{last.address} + last.imageBytes, sectionAlignment),
            AlignUp(overlay, fileAlignment), overlay};
}

void PortableExecutable::patchHeaders(std::span<std::byte> out, const Placement& placement, std::size_t sectionBytes,
                                      std::size_t overlayShift) const {
    const auto put = [&out](std::size_t position, std::uint64_t value) {
        StoreLittle(out, position, static_cast<std::uint32_t>(value));
    };
    const auto directoryAt = [this](std::size_t index) { return header + pe::kDirectories + 8 * index; };
    const std::uint64_t fileBytes = AlignUp(sectionBytes, fileAlignment);

    const std::size_t entry = sectionTable + placement.index * pe::kSectionHeaderBytes;
    if (placement.index == sections.size()) {
        constexpr std::string_view kName = ".rsrc";
        for (std::size_t i = 0; i < kName.size(); ++i) out[entry + i] = static_cast<std::byte>(kName[i]);
        put(entry + pe::kSectionFlags, pe::kInitializedData | pe::kReadable);
    }
    put(entry + pe::kSectionImageBytes, sectionBytes);
    put(entry + pe::kSectionAddress, placement.address);
    put(entry + pe::kSectionFileBytes, fileBytes);
    put(entry + pe::kSectionPosition, placement.position);
    StoreLittle(out, header + pe::kSectionCount,
                static_cast<std::uint16_t>(std::max(placement.index + 1, sections.size())));

    put(directoryAt(pe::kResourceDirectory), placement.address);
    put(directoryAt(pe::kResourceDirectory) + 4, sectionBytes);
    if (directories > pe::kCertificateDirectory) {
        put(directoryAt(pe::kCertificateDirectory), 0);
        put(directoryAt(pe::kCertificateDirectory) + 4, 0);
    }

    std::uint64_t initialized = fileBytes;
    for (std::size_t i = 0; i < std::min(placement.index, sections.size()); ++i)
        if (sections[i].flags & pe::kInitializedData) initialized += sections[i].fileBytes;
    put(header + pe::kInitializedBytes, initialized);
    put(header + pe::kImageBytes, AlignUp(placement.address + sectionBytes, sectionAlignment));

    // Debuggers find the names of functions, and of sections with long names, in the symbol table after the sections.
    const std::uint32_t symbols = number(header + pe::kSymbolPosition);
    if (symbols > file.size()) {
        put(header + pe::kSymbolPosition, 0);
        put(header + pe::kSymbolCount, 0);
    } else if (symbols >= overlay) {
        put(header + pe::kSymbolPosition, symbols + overlayShift);
    }
    put(header + pe::kChecksum, 0);
    put(header + pe::kChecksum, ChecksumOf(out));
}

std::vector<std::byte> PortableExecutable::withResources(const Resources& resources) const {
    // A signature is the last thing in a file.
    std::span<const std::byte> rest = file.subspan(overlay);
    const DataDirectory signature = directory(pe::kCertificateDirectory);
    if (signature.size != 0 && signature.address >= overlay &&
        std::uint64_t{signature.address} + signature.size == file.size())
        rest = rest.first(signature.address - overlay);

    const Placement placement = placeResources();
    const std::uint64_t taken = std::max(placement.address, placement.position + rest.size()) + sectionAlignment;
    if (taken > kMostBytes)
        throw FileError("", "too large, a Windows module must stay below 2 GiB", "use another template");
    std::vector<std::byte> out(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(placement.copiedBytes));
    out.resize(placement.position);
    AppendResourceSection(out, resources, static_cast<std::uint32_t>(placement.address), kMostBytes - taken);
    const std::size_t sectionBytes = out.size() - placement.position;
    out.resize(AlignUp(out.size(), fileAlignment));
    const std::size_t overlayShift = out.size() - overlay;  // a module may become shorter: the sum wraps, and is right
    out.insert(out.end(), rest.begin(), rest.end());
    patchHeaders(out, placement, sectionBytes, overlayShift);
    return out;
}

}  // namespace quillon
