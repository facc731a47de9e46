#include <fmt/format.h>

#include <exception>
#include <limits>
#include <thread>
#include <vector>

#include "cli/check/run/FrameLooks.h"
#include "cli/check/run/TestFrames.h"
#include "cli/system/System.h"

// Level 5: what an effect keeps from frame to frame.

namespace quillon::cli {

namespace {

constexpr std::int32_t kFrames = 6;    // that are rendered in order
constexpr std::int32_t kAgain = 2;     // the one that comes once more
constexpr std::int32_t kByItself = 3;  // the one that another process renders first

std::shared_ptr<host::World> RenderFrame(Trial& trial, std::int32_t frame, const std::string& situation) {
    FrameInput input = TestFrame(8, frame);
    GiveLayers(trial.effect(), input);
    return trial.render(input, situation);
}

}  // namespace

void PlayFramesInOrder(Trial& trial) {
    if (!trial.load(TestHost())) return;
    std::vector<std::uint64_t> digests;
    for (std::int32_t frame = 0; frame < kFrames; ++frame) {
        const auto world = RenderFrame(trial, frame, fmt::format("number {}", frame));
        if (!world) return;
        digests.push_back(DigestOf(*world));
        if (frame == kByItself) trial.reportFrame(frame, *world);
    }
    const auto again = RenderFrame(trial, kAgain, fmt::format("number {} after {}", kAgain, kFrames - 1));
    if (!again) return;
    if (DigestOf(*again) != digests[kAgain])
        return trial.report(
            "render/frame-order",
            fmt::format("frame {} is another one after frame {} than after frame {}", kAgain, kFrames - 1, kAgain - 1));
    std::shared_ptr<host::World> elsewhere;
    std::exception_ptr failure;
    std::thread([&] {
        try {
            elsewhere = RenderFrame(trial, kAgain, "on another thread");
        } catch (...) {
            failure = std::current_exception();
        }
    }).join();
    if (failure) std::rethrow_exception(failure);
    if (elsewhere && DigestOf(*elsewhere) != digests[kAgain])
        trial.report("render/frame-order", fmt::format("frame {} is another one on another thread", kAgain));
}

void PlayFrameByItself(Trial& trial) {
    if (!trial.load(TestHost())) return;
    if (const auto world = RenderFrame(trial, kByItself, "by itself")) trial.reportFrame(kByItself, *world);
}

void PlayLongRun(Trial& trial) {
    constexpr std::int32_t kRun = 200;
    constexpr std::int32_t kWarm = 60;  // drivers fill their caches before
    constexpr std::size_t kMostGrowth = std::size_t{8} << 20;
    if (!trial.load(TestHost())) return;
    std::size_t before = 0;
    for (std::int32_t frame = 0; frame < kRun; ++frame) {
        if (!RenderFrame(trial, frame, fmt::format("number {} of a long run", frame))) return;
        if (frame == kWarm) before = ResidentBytes();
    }
    const std::size_t after = ResidentBytes();
    if (after > before + kMostGrowth)
        trial.report("render/memory", fmt::format("{} MiB more are in use after frame {} than after frame {}",
                                                  (after - before) >> 20, kRun - 1, kWarm));
}

void PlayDamagedInput(Trial& trial) {
    constexpr std::int32_t kLater = 30;
    if (!trial.load(TestHost())) return;
    FrameInput damaged = TestFrame(32, 0);
    GiveLayers(trial.effect(), damaged);
    constexpr float kBad[] = {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
                              -std::numeric_limits<float>::infinity()};
    for (A_long i = 0; i < 3; ++i) {
        auto* const row = reinterpret_cast<float*>(damaged.picture->row(40 + 8 * i).data());
        for (A_long x = 100; x < 108; ++x) row[4 * x + 1 + i] = kBad[i];
    }
    if (!trial.render(damaged, "of an input with NaN and infinities", /*isDamaged=*/true)) return;
    std::shared_ptr<host::World> world;
    for (std::int32_t frame = 1; frame <= kLater; ++frame) {
        FrameInput input = TestFrame(32, frame);
        GiveLayers(trial.effect(), input);
        world = trial.render(input, "after an input with NaN and infinities", /*isDamaged=*/true);
        if (!world) return;
    }
    if (const std::string words = WordsOfBadNumbers(*world); !words.empty())
        trial.report("render/keeps-damage",
                     fmt::format("{} frames after an input with NaN and infinities {}", kLater, words));
}

}  // namespace quillon::cli
