// Planted once: an entry gate that lets everybody in. Under the thread sanitizer the row first plants a race of its
// own, and demands that it is found.

#include <atomic>
#include <random>
#include <thread>

#include "Effects.h"
#include "Ground.h"

#if defined(__SANITIZE_THREAD__)
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace quillon::prove {

namespace {

constexpr int kThreads = 4;
constexpr int kInstancesEach = 4;

test::Bytes FrameOf(host::HostInstance& instance, int number) {
    const auto route = instance.session.settings().routeInUse();
    return RenderedBytes(instance, {WorldOf(instance.session, 4 + number % 3, 3, 8 << number % 3, 5)}, route);
}

std::size_t Drive(host::HostKind kind, int selectors, unsigned seed) {
    const LoadedEffect loaded(ThreePasses());
    host::HostSession session(loaded.effect(), Unrecorded(host::Route::smart, kind));
    // What belongs to the thread of the start must not go with it.
    std::thread([&] { session.start(); }).join();
    std::vector<host::HostInstance*> driven;
    std::vector<test::Bytes> wanted;
    for (int i = 0; i < kThreads * kInstancesEach; ++i) {
        driven.push_back(&session.apply());
        driven.back()->setFloat(1, static_cast<double>(i) / (kThreads * kInstancesEach));
        wanted.push_back(FrameOf(*driven.back(), i));
    }
    std::atomic<int> unlike = 0, sent = 0;
    std::vector<std::exception_ptr> thrown(kThreads);
    const auto drive = [&](int thread) {
        std::mt19937 random(seed + static_cast<unsigned>(thread));
        for (int step = 0; step < selectors / kThreads; ++step, ++sent) {
            const int number = thread * kInstancesEach + static_cast<int>(random() % kInstancesEach);
            host::HostInstance*& instance = driven[static_cast<std::size_t>(number)];
            const unsigned action = random() % 8;
            if (action == 0) {
                session.updateParamsUI(*instance);
            } else if (action == 1) {
                session.userChangedParam(*instance, 1);
            } else if (action == 2) {
                session.save(*instance);
            } else if (action == 3) {
                host::HostInstance& copy = session.duplicate(*instance);
                session.remove(*instance);
                instance = &copy;
            } else if (FrameOf(*instance, number) != wanted[static_cast<std::size_t>(number)]) {
                ++unlike;
            }
        }
    };
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread)
        threads.emplace_back([&, thread] {
            try {
                drive(thread);
            } catch (...) {
                thrown[static_cast<std::size_t>(thread)] = std::current_exception();
            }
        });
    for (std::thread& thread : threads) thread.join();
    for (const std::exception_ptr& each : thrown)
        if (each) std::rethrow_exception(each);
    Require(unlike == 0, std::to_string(unlike) + " frames are not those of one thread");
    return static_cast<std::size_t>(sent);
}

#if defined(__SANITIZE_THREAD__)
void FindThePlantedRace() {
    const pid_t child = fork();
    if (child == 0) {
        close(STDERR_FILENO);
        int shared = 0;
        std::thread other([&] { ++shared; });
        ++shared;
        other.join();
        std::exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    Require(WIFEXITED(status) && WEXITSTATUS(status) == 66, "the thread sanitizer does not see a planted race");
}
#endif

}  // namespace

std::string Threads(bool isLong) {
#if defined(__SANITIZE_THREAD__)
    FindThePlantedRace();
    const int selectors = isLong ? 100'000 : 2000;
#else
    const int selectors = isLong ? 100'000 : 10'000;
#endif
    const unsigned seed = Seed();
    std::size_t sent = 0;
    for (const host::HostKind kind : {host::HostKind::afterEffects, host::HostKind::premiere})
        sent += Drive(kind, selectors / 2, seed);
    return std::to_string(sent) + " selectors from " + std::to_string(kThreads) + " threads";
}

}  // namespace quillon::prove
