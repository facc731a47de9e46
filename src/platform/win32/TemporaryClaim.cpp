#include "platform/TemporaryClaim.h"

#include <windows.h>

#include <mutex>
#include <set>
#include <string>
#include <system_error>

#include "platform/TemporaryPath.h"

namespace quillon {

namespace {

namespace fs = std::filesystem;

struct Claimed {
    std::mutex mutex;
    std::set<fs::path> paths;
    std::string words;  // for the handler
};

// Never destroyed: the system calls the handler on a thread that outlives static objects.
Claimed& ClaimedPaths() {
    static auto* const kClaimed = new Claimed;
    return *kClaimed;
}

// The system gives it only while nobody else has the file or folder open without `shared`.
HANDLE Open(const fs::path& path, DWORD shared) {
    return CreateFileW(path.c_str(), GENERIC_READ, shared, nullptr, OPEN_EXISTING,
                       FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
}

BOOL WINAPI OnConsoleEvent(DWORD) {
    RemoveTemporaries();
    const std::lock_guard lock(ClaimedPaths().mutex);
    const std::string& words = ClaimedPaths().words;
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_ERROR_HANDLE), words.data(), static_cast<DWORD>(words.size()), &written, nullptr);
    return FALSE;  // the default action follows
}

}  // namespace

struct TemporaryClaim::System {
    HANDLE file;
    fs::path path;
};

const bool TemporaryClaim::kBlocksRename = true;

TemporaryClaim::TemporaryClaim(const fs::path& path, const std::function<void()>& make) {
    make();
    system.reset(new System{Open(path, FILE_SHARE_READ | FILE_SHARE_WRITE), path});
    const std::lock_guard lock(ClaimedPaths().mutex);
    ClaimedPaths().paths.insert(path);
}

TemporaryClaim::~TemporaryClaim() {
    if (system->file != INVALID_HANDLE_VALUE) CloseHandle(system->file);
    const std::lock_guard lock(ClaimedPaths().mutex);
    ClaimedPaths().paths.erase(system->path);
}

bool TemporaryClaim::isHeld() const {
    return system->file != INVALID_HANDLE_VALUE && GetFileAttributesW(system->path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

void RemoveIfUnclaimed(const fs::path& path) {
    const HANDLE file = Open(path, 0);
    if (file == INVALID_HANDLE_VALUE) return;
    CloseHandle(file);
    std::error_code ignored;
    fs::remove_all(path, ignored);
}

// A module that is loaded stays, for the next process to remove.
void RemoveTemporaries() {
    StopMakingTemporaries();
    const std::lock_guard lock(ClaimedPaths().mutex);
    std::error_code ignored;
    for (const fs::path& path : ClaimedPaths().paths) fs::remove_all(path, ignored);
}

void SetWordsAtSignals(std::string_view words) {
    const std::lock_guard lock(ClaimedPaths().mutex);
    ClaimedPaths().words = words;
}

void RemoveTemporariesAtSignals() {
    SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
}

}  // namespace quillon
