#pragma once

#include <filesystem>
#include <functional>
#include <memory>

namespace quillon {

// Says that a temporary file or folder belongs to a living process: a lock, which the system drops when the process
// ends in whatever way. Paths are claimed from any thread.
class TemporaryClaim {
public:
    // `make` makes the path, which a signal that ends the process removes from its first moment on. Throws what `make`
    // throws.
    TemporaryClaim(const std::filesystem::path& path, const std::function<void()>& make);
    ~TemporaryClaim();
    TemporaryClaim(const TemporaryClaim&) = delete;
    TemporaryClaim& operator=(const TemporaryClaim&) = delete;

    // False when another process took the path for a leftover before it was claimed.
    bool isHeld() const;

    // Whether the path can be neither renamed nor removed while it is claimed, as on Windows.
    static const bool kBlocksRename;

private:
    struct System;
    std::unique_ptr<System> system;
};

// From now on no thread makes a temporary path, and all that were made are claimed: for a process that ends.
void StopMakingTemporaries();

// Removes a temporary file or folder, with all in it, if it is the calling user's and no process claims it.
void RemoveIfUnclaimed(const std::filesystem::path& path);

}  // namespace quillon
