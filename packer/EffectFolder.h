#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "packer/PackageFile.h"

namespace quillon {

// A file of an effect's folder, as the folder's listing shows it.
struct FolderEntry {
    std::filesystem::path path;
    std::string name;  // the last component of the path
    std::uint64_t bytes;
};

// The files of an effect's folder, sorted by the bytes of their names. Left out are names that begin with a dot, and
// the two files for the author's editor, quillon.d.ts and jsconfig.json. Reads no file. Throws FileError for what
// cannot become a package: no such folder, a folder inside, a link that leads out of the folder, a device or a pipe,
// names that an archive cannot carry, and 4 GiB or more in all.
std::vector<FolderEntry> ListEffectFolder(const std::filesystem::path& folder);

// Reads the files of a listing, in its order. Throws FileError for one that cannot be read.
std::vector<PackageFile> ReadEffectFiles(const std::vector<FolderEntry>& entries);

}  // namespace quillon
