#include "packer/EffectFolder.h"

#include <algorithm>

#include "packer/FileError.h"
#include "packer/PackageNames.h"
#include "packer/WholeFile.h"

namespace quillon {

std::vector<PackageFile> ReadEffectFolder(const std::filesystem::path& folder) {
    std::vector<PackageFile> files;
    try {
        if (!std::filesystem::is_directory(folder))
            throw FileError(folder.generic_string(), "no such folder", "name the one that holds fx.js");
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            const std::string name = entry.path().filename().string();
            if (name.starts_with('.')) continue;
            if (entry.is_directory())
                throw FileError(entry.path().generic_string(), "a folder",
                                "an effect's folder is flat, move its files up");
            if (!entry.is_regular_file())
                throw FileError(entry.path().generic_string(), "not a file", "move it out of the effect's folder");
            files.push_back({name, ReadWholeFile(entry.path())});
        }
    } catch (const std::filesystem::filesystem_error& error) {
        throw FileError(folder.generic_string(), "cannot be read: " + error.code().message(), "check its permissions");
    }
    std::sort(files.begin(), files.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    try {
        CheckPackageNames(files);
    } catch (const FileError& error) {
        throw error.at(folder.generic_string());
    }
    return files;
}

}  // namespace quillon
