#include "cli/preview/EffectWatch.h"

#include <system_error>
#include <thread>

namespace quillon::cli {

namespace {

using std::chrono::milliseconds;

// How often is looked when the system reports nothing, how long files must rest, and how long a burst may take.
constexpr milliseconds kPeriod(250), kRest(30), kLongestBurst(1000);

}  // namespace

EffectWatch::EffectWatch(std::filesystem::path effectPath, std::vector<std::filesystem::path> otherFiles)
    : effect(std::move(effectPath)), others(std::move(otherFiles)), folder(effect), seen(look()) {}

// Names that begin with a dot are no part of an effect, and editors keep their own files there.
EffectWatch::Files EffectWatch::look() const {
    Files files;
    const auto add = [&files](const std::filesystem::path& path) {
        std::error_code error;
        const auto time = std::filesystem::last_write_time(path, error);
        if (error) return;
        const auto size = std::filesystem::file_size(path, error);
        files[path.string()] = {error ? 0 : size, time};
    };
    std::error_code error;
    std::filesystem::directory_iterator entries(effect, error);
    for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error))
        if (!entries->path().filename().string().starts_with('.')) add(entries->path());
    if (files.empty()) add(effect);
    for (const std::filesystem::path& path : others) add(path);
    return files;
}

void EffectWatch::wait(const std::stop_token& stop) {
    while (!stop.stop_requested() && !hasChanged()) folder.wait(kPeriod);
    const auto start = std::chrono::steady_clock::now();
    seen = look();
    do {
        std::this_thread::sleep_for(kRest);
        Files now = look();
        if (now == seen) return;
        seen = std::move(now);
    } while (std::chrono::steady_clock::now() - start < kLongestBurst);
}

}  // namespace quillon::cli
