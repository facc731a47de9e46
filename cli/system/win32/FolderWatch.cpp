#include "cli/system/FolderWatch.h"

#include <windows.h>

#include <thread>

namespace quillon::cli {

struct FolderWatch::System {
    std::filesystem::path folder;
    HANDLE changes = INVALID_HANDLE_VALUE;
};

FolderWatch::FolderWatch(const std::filesystem::path& path) : system(std::make_unique<System>()) {
    std::error_code error;
    system->folder = std::filesystem::is_regular_file(path, error) ? path.parent_path() : path;
    if (system->folder.empty()) system->folder = ".";
}

FolderWatch::~FolderWatch() {
    if (system->changes != INVALID_HANDLE_VALUE) FindCloseChangeNotification(system->changes);
}

void FolderWatch::wait(std::chrono::milliseconds longest) {
    constexpr DWORD kChanges = FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_SIZE | FILE_NOTIFY_CHANGE_LAST_WRITE;
    if (system->changes == INVALID_HANDLE_VALUE)
        system->changes = FindFirstChangeNotificationW(system->folder.c_str(), FALSE, kChanges);
    if (system->changes == INVALID_HANDLE_VALUE) {
        std::this_thread::sleep_for(longest);
        return;
    }
    const DWORD outcome = WaitForSingleObject(system->changes, static_cast<DWORD>(longest.count()));
    // A folder that has vanished reports no more; it may come back.
    std::error_code error;
    const bool isThere = std::filesystem::is_directory(system->folder, error);
    if (isThere && outcome == WAIT_TIMEOUT) return;
    if (isThere && outcome == WAIT_OBJECT_0 && FindNextChangeNotification(system->changes)) return;
    FindCloseChangeNotification(system->changes);
    system->changes = INVALID_HANDLE_VALUE;
}

}  // namespace quillon::cli
