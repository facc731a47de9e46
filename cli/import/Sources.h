#pragma once

#include <filesystem>
#include <string>

namespace quillon::cli {

// Whole files. Throw ToolError, with the remedy, for a file that cannot be read, and for one too large to be what it
// is said to be: 8 MiB of shader text, 256 MiB of a picture.
std::string ReadShaderSource(const std::filesystem::path& path);  // as NormalizeSource gives it
std::string ReadSourceBytes(const std::filesystem::path& path);

}  // namespace quillon::cli
