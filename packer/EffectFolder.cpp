#include "packer/EffectFolder.h"

#include <algorithm>

#include "packer/PackageError.h"
#include "packer/PackageNames.h"
#include "packer/WholeFile.h"

namespace quillon {

std::vector<PackageFile> ReadEffectFolder(const std::filesystem::path& folder) {
    std::vector<PackageFile> files;
    try {
        if (!std::filesystem::is_directory(folder))
            throw PackageError(folder.generic_string() + ": no such folder; name the one that holds fx.js");
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            const std::string name = entry.path().filename().string();
            if (name.starts_with('.')) continue;
            if (entry.is_directory())
                throw PackageError(entry.path().generic_string() +
                                   ": a folder; an effect's folder is flat, move its files up");
            files.push_back({name, ReadWholeFile(entry.path())});
        }
    } catch (const std::filesystem::filesystem_error& error) {
        throw PackageError(folder.generic_string() + ": cannot be read; " + error.code().message());
    }
    std::sort(files.begin(), files.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    try {
        CheckPackageNames(files);
    } catch (const PackageError& error) {
        throw PackageError(folder.generic_string() + ": " + error.what());
    }
    return files;
}

}  // namespace quillon
