#pragma once

#include <cstddef>
#include <filesystem>
#include <vector>

namespace quillon {

// All bytes of a file of less than 4 GiB, more than which no package and no module can have. Throws PackageError when
// it is larger, is no file (a link counts as what it leads to), or cannot be read.
std::vector<std::byte> ReadWholeFile(const std::filesystem::path& path);

}  // namespace quillon
