#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quillon {

// A file in a package.
struct PackageFile {
    std::string name;  // flat, no folder in it
    std::vector<std::byte> bytes;
};

// Throws FileError, without a place, unless the engine can fetch each of the files by its name: at most 65,535 files;
// names not empty, without '/', '\', ':' and zero bytes, at most 65,535 bytes long, and no two that differ in the case
// of ASCII letters only.
void CheckPackageNames(const std::vector<std::string>& names);

}  // namespace quillon
