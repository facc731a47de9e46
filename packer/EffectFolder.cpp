#include "packer/EffectFolder.h"

#include <algorithm>
#include <string_view>
#include <system_error>

#include "packer/FileError.h"
#include "packer/WholeFile.h"

namespace quillon {

namespace {

namespace fs = std::filesystem;

// For the author's editor. They say nothing of the effect.
constexpr std::string_view kEditorFiles[] = {"jsconfig.json", "quillon.d.ts"};

bool IsLeftOut(const std::string& name) {
    return name.starts_with('.') || std::ranges::count(kEditorFiles, name) != 0;
}

// Whether the file that a link leads to is one of `folder`, which is canonical.
bool LeadsInto(const fs::path& folder, const fs::path& link) {
    std::error_code error;
    const fs::path target = fs::canonical(link, error);
    return !error && std::mismatch(folder.begin(), folder.end(), target.begin(), target.end()).first == folder.end();
}

// The size of the file. Throws FileError for what is not a file of this folder.
std::uint64_t SizeOf(const fs::path& folder, const fs::directory_entry& entry) {
    const std::string place = entry.path().generic_string();
    // A package goes to other people: nothing gets into it that the author does not see in the folder.
    if (entry.is_symlink() && !LeadsInto(folder, entry.path()))
        throw FileError(place, "a link that leads out of the effect's folder", "replace it by a copy of the file");
    if (entry.is_directory()) throw FileError(place, "a folder", "an effect's folder is flat, move its files up");
    if (!entry.is_regular_file()) throw FileError(place, "a device or a pipe", "move it out of the effect's folder");
    return entry.file_size();
}

}  // namespace

std::vector<FolderEntry> ListEffectFolder(const fs::path& folder) {
    const std::string place = folder.generic_string();
    std::vector<FolderEntry> entries;
    std::uint64_t bytes = 0;
    try {
        if (!fs::is_directory(folder)) throw FileError(place, "no such folder", "name the one that holds fx.js");
        const fs::path canonical = fs::canonical(folder);
        for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
            const std::string name = entry.path().filename().string();
            if (IsLeftOut(name)) continue;
            entries.push_back({entry.path(), name, SizeOf(canonical, entry)});
            bytes += entries.back().bytes;
        }
    } catch (const fs::filesystem_error& error) {
        throw FileError(place, "cannot be read: " + error.code().message(), "check its permissions");
    }
    if (bytes > kMostFileBytes)
        throw FileError(place, "its files have " + std::to_string(bytes) + " bytes; a package must stay below 4 GiB",
                        "use fewer or smaller files");
    std::ranges::sort(entries, {}, &FolderEntry::name);
    std::vector<std::string> names;
    for (const FolderEntry& entry : entries) names.push_back(entry.name);
    try {
        CheckPackageNames(names);
    } catch (const FileError& error) {
        throw error.at(place);
    }
    return entries;
}

std::vector<PackageFile> ReadEffectFiles(const std::vector<FolderEntry>& entries) {
    std::vector<PackageFile> files;
    for (const FolderEntry& entry : entries) files.push_back({entry.name, ReadWholeFile(entry.path)});
    return files;
}

}  // namespace quillon
