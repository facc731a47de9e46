#include "cli/system/FolderWatch.h"

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <thread>

namespace quillon::cli {

struct FolderWatch::System {
    std::filesystem::path folder;
    int queue = -1;
};

FolderWatch::FolderWatch(const std::filesystem::path& path) : system(std::make_unique<System>()) {
    std::error_code error;
    system->folder = std::filesystem::is_regular_file(path, error) ? path.parent_path() : path;
    if (system->folder.empty()) system->folder = ".";
    system->queue = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
}

FolderWatch::~FolderWatch() {
    if (system->queue >= 0) close(system->queue);
}

void FolderWatch::wait(std::chrono::milliseconds longest) {
    // Each time anew: the folder may be another one of the same name. The same one keeps its one watch.
    constexpr std::uint32_t kChanges =
        IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_CREATE | IN_DELETE | IN_ATTRIB | IN_MODIFY;
    if (system->queue < 0 || inotify_add_watch(system->queue, system->folder.c_str(), kChanges | IN_ONLYDIR) < 0) {
        std::this_thread::sleep_for(longest);
        return;
    }
    pollfd events{system->queue, POLLIN, 0};
    if (poll(&events, 1, static_cast<int>(longest.count())) <= 0) return;
    char records[4096];
    while (read(system->queue, records, sizeof(records)) > 0) {
    }
}

}  // namespace quillon::cli
