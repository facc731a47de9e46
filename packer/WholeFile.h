#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace quillon {

// No package and no module can have more bytes.
inline constexpr std::uint64_t kMostFileBytes = 0xFFFFFFFE;

// All bytes of a file, or of a pipe or device up to its end. Throws FileError when there is no such file, when it
// cannot be read, and when it has more than `mostBytes`; a regular file that is too large is refused before it is read.
std::vector<std::byte> ReadWholeFile(const std::filesystem::path& path, std::uint64_t mostBytes = kMostFileBytes);

// Writes a file whole or not at all: to a temporary file in the same folder, which reaches the disk and then takes the
// file's name. Replaces what has that name unless it is write-protected; follows links; writes into a pipe or a device
// directly. The file has the permissions of any new file. Throws FileError without a remedy, since only the caller
// knows what chose the name.
void WriteWholeFile(const std::filesystem::path& path, std::span<const std::byte> bytes);

}  // namespace quillon
