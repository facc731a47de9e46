// Planted once: an entry point that all modules of a process share; a descriptor that each load leaves open.

#include <filesystem>
#include <random>
#include <thread>

#include "Effects.h"
#include "Ground.h"
#include "LiveGL.h"

namespace quillon::prove {

namespace {

constexpr std::size_t kModules = 10, kRenderers = 4;

// A tenth module for each strength; the copies have one.
test::Files Tinted(std::size_t strength) {
    test::Files files = ThreePasses();
    for (auto& [name, content] : files)
        if (name == "tint.frag") content.replace(content.find("2.0)"), 3, std::to_string(strength + 2) + ".0");
    return files;
}

struct Guest {
    explicit Guest(const test::Files& files) : loaded(files), session(loaded.effect(), Unrecorded()) {
        session.start();
        instance = &session.apply();
        instance->setFloat(1, 0.5);
        wanted = frame();
    }
    ~Guest() {
        session.remove(*instance);
        session.globalSetdown();
    }
    Guest(const Guest&) = delete;
    Guest& operator=(const Guest&) = delete;

    test::Bytes frame() { return RenderedBytes(*instance, {WorldOf(session, 16, 9, 8, 5)}, host::Route::smart); }

    LoadedEffect loaded;
    host::HostSession session;
    host::HostInstance* instance = nullptr;
    test::Bytes wanted;
};

std::size_t CountIn(const char* folder) {
    const std::filesystem::directory_iterator entries(folder);
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

std::size_t RenderInAll(int framesEach) {
    std::vector<std::unique_ptr<Guest>> guests;
    for (std::size_t i = 0; i < 2 * kModules; ++i)
        guests.push_back(std::make_unique<Guest>(Tinted(i < kModules ? 0 : i - kModules)));
    for (std::size_t i = 1; i < guests.size(); ++i) {
        const bool isCopy = i <= kModules;
        Require((guests[i]->wanted == guests[isCopy ? 0 : i - 1]->wanted) == isCopy,
                "module " + std::to_string(i) + " renders another one's picture");
    }
    Require(CountLiveGL().contexts == static_cast<int>(guests.size()), "not one GL context for each module");
    std::vector<std::exception_ptr> thrown(kRenderers);
    std::vector<std::thread> threads;
    for (std::size_t thread = 0; thread < kRenderers; ++thread)
        threads.emplace_back([&, thread] {
            try {
                std::mt19937 random(static_cast<unsigned>(thread));
                for (int i = 0; i < framesEach; ++i) {
                    Guest& guest = *guests[random() % guests.size()];
                    Require(guest.frame() == guest.wanted, "another picture, among modules");
                }
            } catch (...) {
                thrown[thread] = std::current_exception();
            }
        });
    for (std::thread& thread : threads) thread.join();
    for (const std::exception_ptr& each : thrown)
        if (each) std::rethrow_exception(each);
    return kRenderers * static_cast<std::size_t>(framesEach);
}

}  // namespace

// What docs/limits.md names: the GL context of a module that is unloaded, with what its driver keeps for it.
std::string Copies(bool isLong) {
    const std::size_t frames = RenderInAll(isLong ? 5000 : 100);
    const int loads = isLong ? 1000 : 200;
    constexpr int kWarmUp = 10;
    constexpr std::size_t kMostKept = std::size_t{8} << 20;
    std::size_t files = 0, threads = 0, memory = 0;
    for (int load = 0; load < loads; ++load) {
        NowAt("load " + std::to_string(load));
        { const Guest guest(Tinted(static_cast<std::size_t>(load) % 5)); }
        if (load != kWarmUp) continue;
        files = CountIn("/proc/self/fd");
        threads = CountIn("/proc/self/task");
        memory = ResidentBytes();
    }
    const auto turns = static_cast<std::size_t>(loads - kWarmUp - 1);
    const std::size_t kept = (ResidentBytes() - memory) / turns;
    const std::size_t filesNow = CountIn("/proc/self/fd"), threadsNow = CountIn("/proc/self/task");
    const std::string figures = std::to_string(frames) + " frames of " + std::to_string(2 * kModules) +
                                " modules; each of " + std::to_string(turns) + " loads keeps " +
                                std::to_string(kept >> 10) + " KiB, " +
                                std::to_string(static_cast<int>(filesNow - files)) + " descriptors and " +
                                std::to_string(static_cast<int>(threadsNow - threads)) + " threads for all";
    Require(kept < kMostKept && filesNow <= files && threadsNow <= threads, "unloading leaves too much: " + figures);
    return figures;
}

}  // namespace quillon::prove
