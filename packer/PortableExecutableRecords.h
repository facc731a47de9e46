#pragma once

#include <cstddef>
#include <cstdint>

namespace quillon::pe {

// Where fields lie in the headers of a 64-bit Windows image: from its signature "PE\0\0" on, which the 32 bits at
// kHeaderPosition in the file lead to, and from the start of a section's header.
inline constexpr std::size_t kHeaderPosition = 0x3C;

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

inline constexpr std::size_t kResourceDirectory = 2;
inline constexpr std::size_t kCertificateDirectory = 4;  // its address is a position in the file
inline constexpr std::size_t kKnownDirectories = 16;

inline constexpr std::size_t kSectionHeaderBytes = 40;
inline constexpr std::size_t kSectionImageBytes = 8;  // behind the name, 8 bytes
inline constexpr std::size_t kSectionAddress = 12;
inline constexpr std::size_t kSectionFileBytes = 16;
inline constexpr std::size_t kSectionPosition = 20;
inline constexpr std::size_t kSectionFlags = 36;

inline constexpr std::uint32_t kInitializedData = 0x40;
inline constexpr std::uint32_t kReadable = 0x40000000;
inline constexpr std::size_t kMostSections = 96;  // that the system loads

}  // namespace quillon::pe
