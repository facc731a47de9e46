#include "platform/TemporaryClaim.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <system_error>

#include "platform/TemporaryPath.h"

namespace quillon {

namespace {

// What a signal's handler may read: no memory that is allocated, no locks.
struct RemovedAtSignal {
    enum State { unused, inPreparation, ready };
    std::atomic<State> state = unused;
    char path[PATH_MAX];
};

// More are never claimed at once; a path that finds no place here is left for the next process to remove.
RemovedAtSignal removedAtSignal[64];

RemovedAtSignal* Register(const char* path) {
    const std::size_t size = std::strlen(path) + 1;
    if (size > PATH_MAX) return nullptr;
    for (RemovedAtSignal& entry : removedAtSignal) {
        RemovedAtSignal::State expected = RemovedAtSignal::unused;
        if (!entry.state.compare_exchange_strong(expected, RemovedAtSignal::inPreparation)) continue;
        std::memcpy(entry.path, path, size);
        entry.state = RemovedAtSignal::ready;
        return &entry;
    }
    return nullptr;
}

// The files of a folder, and the folder.
bool RemoveFolderInHandler(const char* path) {
    const int folder = open(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (folder < 0) return true;
    alignas(dirent64) char records[4096];
    long bytes = 0;
    while ((bytes = syscall(SYS_getdents64, folder, records, sizeof(records))) > 0) {
        for (long at = 0; at < bytes;) {
            const auto* const record = reinterpret_cast<const dirent64*>(records + at);
            unlinkat(folder, record->d_name, 0);
            at += record->d_reclen;
        }
    }
    close(folder);
    return rmdir(path) == 0 || errno != ENOTEMPTY;
}

// A file, or a folder of files. Only calls that a signal's handler may make: opendir() allocates. Another program may
// be about to make a file in the folder, which it can no longer when the folder is gone.
void RemoveInHandler(const char* path) {
    constexpr int kMostTries = 100;
    if (unlink(path) == 0) return;
    for (int i = 0; i < kMostTries && !RemoveFolderInHandler(path); ++i) {
    }
}

// Two places, so that one is whole at any time.
char wordsAtSignals[2][256];
std::atomic<int> wordsInUse = 0;

std::atomic_flag hasSaidWords;

// The default action follows. Until then the handler stays: another thread can get the same signal again, and would end
// the process before all is removed.
void OnSignal(int number) {
    RemoveTemporaries();
    const char* const words = wordsAtSignals[wordsInUse];
    if ((number == SIGINT || number == SIGTERM) && !hasSaidWords.test_and_set())
        static_cast<void>(!write(STDERR_FILENO, words, std::strlen(words)));  // there is nobody left to report to
    std::signal(number, SIG_DFL);
    raise(number);
}

int Open(const char* path) {
    return open(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
}

}  // namespace

struct TemporaryClaim::System {
    explicit System(RemovedAtSignal* registered) : entry(registered) {}
    ~System() {
        if (entry) entry->state = RemovedAtSignal::unused;
        if (file >= 0) close(file);
    }
    System(const System&) = delete;
    System& operator=(const System&) = delete;

    RemovedAtSignal* const entry;
    int file = -1;
    bool isHeld = false;
};

const bool TemporaryClaim::kBlocksRename = false;

TemporaryClaim::TemporaryClaim(const std::filesystem::path& path, const std::function<void()>& make)
    : system(std::make_unique<System>(Register(path.c_str()))) {
    make();
    system->file = Open(path.c_str());
    // Without the lock when the file system has none: then no other process can get it either.
    const bool isTaken = system->file >= 0 && flock(system->file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    // Another process may have removed it before the lock.
    struct stat status {};
    system->isHeld = !isTaken && lstat(path.c_str(), &status) == 0;
}

TemporaryClaim::~TemporaryClaim() = default;

bool TemporaryClaim::isHeld() const {
    return system->isHeld;
}

void RemoveIfUnclaimed(const std::filesystem::path& path) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0 || status.st_uid != geteuid()) return;
    const int file = Open(path.c_str());
    if (file < 0) return;
    std::error_code ignored;
    if (flock(file, LOCK_EX | LOCK_NB) == 0) std::filesystem::remove_all(path, ignored);
    close(file);
}

void RemoveTemporaries() {
    StopMakingTemporaries();
    for (RemovedAtSignal& entry : removedAtSignal) {
        if (entry.state == RemovedAtSignal::ready) RemoveInHandler(entry.path);
    }
}

void SetWordsAtSignals(std::string_view words) {
    const int next = 1 - wordsInUse;
    wordsAtSignals[next][words.copy(wordsAtSignals[next], sizeof(wordsAtSignals[next]) - 1)] = '\0';
    wordsInUse = next;
}

void RemoveTemporariesAtSignals() {
    // A crash may be that of a full stack.
    static char stack[1 << 16];
    stack_t alternative{};
    alternative.ss_sp = stack;
    alternative.ss_size = sizeof(stack);
    sigaltstack(&alternative, nullptr);
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT}) {
        struct sigaction current {};
        if (sigaction(number, nullptr, &current) != 0 || current.sa_handler != SIG_DFL) continue;
        struct sigaction action {};
        action.sa_handler = OnSignal;
        action.sa_flags = SA_ONSTACK;
        sigaction(number, &action, nullptr);
    }
}

}  // namespace quillon
