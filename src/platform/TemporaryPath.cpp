#include "platform/TemporaryPath.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <fstream>
#include <mutex>
#include <new>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <thread>

#include "platform/TemporaryClaim.h"

namespace quillon {

namespace {

namespace fs = std::filesystem;

// Long enough that no user has such a name by chance: everything that has one may be removed.
constexpr std::string_view kStart = ".quillon-temporary-";
constexpr std::string_view kDigits = "0123456789abcdef";
constexpr std::size_t kDigitCount = 16;

std::string NewName() {
    std::random_device random;
    std::string name(kStart);
    for (std::size_t i = 0; i < kDigitCount; ++i) name += kDigits[random() % kDigits.size()];
    return name;
}

bool IsTemporaryName(const std::string& name) {
    return name.size() == kStart.size() + kDigitCount && name.starts_with(kStart) &&
           name.find_first_not_of(kDigits, kStart.size()) == std::string::npos;
}

// Once a process for each place, since a sequence writes thousands of files to one folder.
void RemoveLeftovers(const fs::path& place) {
    static std::mutex mutex;
    static std::set<fs::path> cleared;
    const std::lock_guard lock(mutex);
    if (!cleared.insert(place).second) return;
    std::error_code error;
    fs::directory_iterator entries(place, error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
        if (IsTemporaryName(entries->path().filename().string())) RemoveIfUnclaimed(entries->path());
    }
}

void MakeFile(const fs::path& path) try {
    errno = 0;
    if (!std::ofstream(path, std::ios::binary))
        throw fs::filesystem_error("temporary file", path, {errno != 0 ? errno : EIO, std::generic_category()});
} catch (const std::bad_alloc&) {
    // The stream makes the file before its own buffer.
    std::error_code ignored;
    fs::remove(path, ignored);
    throw;
}

void Make(const fs::path& path, TemporaryPath::Kind kind) {
    if (kind == TemporaryPath::Kind::file) return MakeFile(path);
    fs::create_directory(path);
    if (kind == TemporaryPath::Kind::folder) return;
    // Another process may have taken it for a leftover already. Its claim then fails, and another name is tried.
    std::error_code error;
    fs::permissions(path, fs::perms::owner_all, error);
    if (error && error != std::errc::no_such_file_or_directory)
        throw fs::filesystem_error("temporary folder", path, error);
}

std::atomic<int> makersAtWork = 0;
std::atomic<bool> isEnding = false;

// A thread makes a temporary path and claims it. While the process ends, no thread comes past the constructor.
class Maker {
public:
    Maker() {
        while (++makersAtWork, isEnding) {
            --makersAtWork;
            std::this_thread::sleep_for(std::chrono::seconds(1));
        }
    }
    ~Maker() { --makersAtWork; }
    Maker(const Maker&) = delete;
    Maker& operator=(const Maker&) = delete;
};

}  // namespace

// Bounded, as a signal's handler may have interrupted the very thread that is at it.
void StopMakingTemporaries() {
    isEnding = true;
    for (int i = 0; i < 100 && makersAtWork != 0; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

TemporaryPath::TemporaryPath(const fs::path& place, Kind kind) {
    RemoveLeftovers(place.empty() ? fs::path(".") : place);
    const Maker maker;
    do {
        name = place / NewName();
        claim = std::make_unique<TemporaryClaim>(name, [&] { Make(name, kind); });
    } while (!claim->isHeld());
}

TemporaryPath::~TemporaryPath() {
    remove();
}

bool TemporaryPath::remove() {
    if (!isTemporary) return true;
    if (TemporaryClaim::kBlocksRename) claim.reset();
    std::error_code error;
    try {
        fs::remove_all(name, error);
    } catch (const std::bad_alloc&) {
        // It stays claimed until the process ends, for RemoveTemporaries(), which needs no memory.
        static_cast<void>(claim.release());
        isTemporary = false;
        return false;
    }
    isTemporary = bool(error);
    if (!isTemporary) claim.reset();
    return !isTemporary;
}

std::error_code TemporaryPath::moveTo(const fs::path& path) {
    if (TemporaryClaim::kBlocksRename) claim.reset();
    std::error_code error;
    fs::rename(name, path, error);
    isTemporary = bool(error);
    if (!isTemporary) claim.reset();
    return error;
}

}  // namespace quillon
