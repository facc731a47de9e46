#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace quillon {

struct PackageFile {
    std::string name;  // flat, no folder in it
    std::vector<std::byte> bytes;
};

// Reads all files of an effect's folder, sorted by name; hidden files (".name") are left out. Throws FileError for
// what cannot become a package: no such folder, a folder inside, an unreadable file, two names that differ in case
// only, a name that an archive cannot carry.
std::vector<PackageFile> ReadEffectFolder(const std::filesystem::path& folder);

}  // namespace quillon
