#pragma once

#include <filesystem>

namespace quillon {

// A new, empty folder of the calling user's own among the system's temporary files, with all in it removed at the end.
class TemporaryFolder {
public:
    // Throws std::filesystem::filesystem_error when there is no place for it.
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return folder; }

    // Ahead of the end. False when something in it cannot be removed yet, as a module that is loaded on Windows.
    bool remove();

private:
    std::filesystem::path folder;
};

}  // namespace quillon
