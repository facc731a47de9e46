#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

#include "cli/system/FolderWatch.h"

namespace quillon::cli {

// Notices that files of an effect, or the pictures that it is shown with, have changed. By their sizes and times of
// modification, so that it works on every file system; where the system reports changes, they are seen at once. One
// thread.
class EffectWatch {
public:
    // The effect's folder or module, and further files.
    EffectWatch(std::filesystem::path effectPath, std::vector<std::filesystem::path> otherFiles);

    // Waits for a change, and then for the end of a burst of them: editors save in several steps, and by renaming.
    // Files that have vanished and come back are changes too. A stop is noticed within a quarter of a second.
    void wait(const std::stop_token& stop);
    // Whether files have changed since wait() returned.
    bool hasChanged() const { return look() != seen; }

private:
    using Files = std::map<std::string, std::pair<std::uintmax_t, std::filesystem::file_time_type>>;
    Files look() const;

    std::filesystem::path effect;
    std::vector<std::filesystem::path> others;
    FolderWatch folder;
    Files seen;
};

}  // namespace quillon::cli
