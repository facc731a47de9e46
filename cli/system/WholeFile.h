#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <vector>

namespace quillon::cli {

// The file's bytes. Throws a Fault when it cannot be read.
std::vector<std::byte> ReadWholeFile(const std::filesystem::path& path);

// Writes the file whole or not at all: to a temporary name in the same folder, which then takes the file's name and
// replaces what had it. Throws a Fault.
void WriteWholeFile(const std::filesystem::path& path, std::span<const std::byte> bytes);

}  // namespace quillon::cli
