#pragma once

#include <chrono>
#include <filesystem>
#include <memory>

namespace quillon::cli {

// Wakes up when the system reports a change in a folder. A hint only: some file systems report nothing. One thread.
class FolderWatch {
public:
    // A folder, or a file, whose folder is watched. It need not exist yet.
    explicit FolderWatch(const std::filesystem::path& path);
    ~FolderWatch();
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;

    // Until something may have changed, at most this long.
    void wait(std::chrono::milliseconds longest);

private:
    struct System;
    std::unique_ptr<System> system;
};

}  // namespace quillon::cli
