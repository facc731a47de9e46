#pragma once

#include <cstddef>
#include <cstdint>

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

}  // namespace quillon
