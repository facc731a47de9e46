#pragma once

#include <filesystem>
#include <vector>

#include "packer/PackageFile.h"

namespace quillon {

// The files of the package that a module carries, in the package's order: those of the folder that was packed. Throws
// FileError for a file that cannot be read or carries no package, and for a package that is damaged.
std::vector<PackageFile> ReadPackage(const std::filesystem::path& module);

}  // namespace quillon
