#pragma once

#include <cstddef>
#include <cstdint>

namespace quillon::pe {

// Where the headers of a 64-bit Windows image begin, with its signature "PE\0\0": 32 bits at this place in the file.
inline constexpr std::size_t kHeaderPosition = 0x3C;

// Where the headers' fields are, from that signature on. 32 bits, unless it is said otherwise.
inline constexpr std::size_t kMachine = 4;          // 16 bits
inline constexpr std::size_t kSectionCount = 6;     // 16 bits
inline constexpr std::size_t kSymbolPosition = 12;  // in the file
inline constexpr std::size_t kSymbolCount = 16;
inline constexpr std::size_t kOptionalBytes = 20;     // 16 bits
inline constexpr std::size_t kOptional = 24;          // where the optional header begins; its magic, 16 bits
inline constexpr std::size_t kInitializedBytes = 32;  // of all sections with initialized data
inline constexpr std::size_t kSectionAlignment = 56;
inline constexpr std::size_t kFileAlignment = 60;
inline constexpr std::size_t kImageBytes = 80;
inline constexpr std::size_t kHeaderBytes = 84;
inline constexpr std::size_t kChecksum = 88;
inline constexpr std::size_t kDirectoryCount = 132;
inline constexpr std::size_t kDirectories = 136;  // 8 bytes each: address, size

// Numbers of directories.
inline constexpr std::size_t kResourceDirectory = 2;
inline constexpr std::size_t kCertificateDirectory = 4;  // its address is a position in the file
inline constexpr std::size_t kKnownDirectories = 16;

// The size of a section's header, and where its fields are.
inline constexpr std::size_t kSectionHeaderBytes = 40;
inline constexpr std::size_t kSectionImageBytes = 8;  // after the name, 8 bytes
inline constexpr std::size_t kSectionAddress = 12;
inline constexpr std::size_t kSectionFileBytes = 16;
inline constexpr std::size_t kSectionPosition = 20;
inline constexpr std::size_t kSectionFlags = 36;

// Bits of kSectionFlags.
inline constexpr std::uint32_t kInitializedData = 0x40;
inline constexpr std::uint32_t kReadable = 0x40000000;
inline constexpr std::size_t kMostSections = 96;  // that the system loads

}  // namespace quillon::pe

namespace quillon {

// Records of a resource directory. A directory is a head and entries, those with texts first; an entry is an id and the
// offset of what it leads to, from the start of the section, 32 bits each. The high bit of an id makes it the offset of
// a text (16-bit length, UTF-16), that of an offset makes it lead to a directory instead of a data entry. A data entry
// is the data's address in the loaded image, its size, a code page and 32 bits of nothing.
inline constexpr std::size_t kDirectoryHeadBytes = 16;
inline constexpr std::size_t kDirectoryNamedCount = 12;  // 16 bits
inline constexpr std::size_t kDirectoryIdCount = 14;     // 16 bits
inline constexpr std::size_t kDirectoryEntryBytes = 8;
inline constexpr std::size_t kDataEntryBytes = 16;
inline constexpr std::uint32_t kHighBit = 0x80000000;

// The next multiple of the alignment, or the value itself when it is one. The sum of both must fit.
constexpr std::uint64_t AlignUp(std::uint64_t value, std::uint64_t alignment) {
    return (value + alignment - 1) / alignment * alignment;
}

}  // namespace quillon
