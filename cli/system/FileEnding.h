#pragma once

#include <filesystem>
#include <string>

namespace quillon::cli {

// The end of the file's name from its last dot on, the letters A to Z made small; empty without a dot. Names that
// differ only in case mean the same to those who type them, and on Windows to the system.
std::string LowerEnding(const std::filesystem::path& path);

}  // namespace quillon::cli
