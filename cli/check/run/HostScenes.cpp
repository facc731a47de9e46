#include <fmt/format.h>

#include <algorithm>
#include <initializer_list>

#include "cli/check/run/ControlEnds.h"
#include "cli/check/run/TestFrames.h"
#include "cli/effect/LinkedEngine.h"

// Level 4: the effect in other hosts, at other sizes, and twice.

namespace quillon::cli {

namespace {

void RenderDepths(Trial& trial, std::initializer_list<std::uint32_t> depths, const char* situation,
                  std::uint32_t n = 1) {
    for (const std::uint32_t depth : depths) {
        FrameInput input = TestFrame(depth, 0, kTestExtent, n);
        GiveLayers(trial.effect(), input, kTestExtent, n);
        if (!trial.render(input, fmt::format("{}, {}", situation, WordsOfDepth(depth)))) return;
    }
}

// Each control to its last end, so that the frame differs from the default's where it can.
void MoveControls(LoadedEffect& effect) {
    for (const Control& control : effect.controls()) {
        const auto values = EndsOf(control);
        if (!values.empty()) effect.set(control, [value = values.back()](double) { return value; });
    }
}

}  // namespace

void PlaySizesAndLayers(Trial& trial) {
    if (!trial.load(TestHost())) return;
    constexpr PictureExtent kExtents[] = {{1, 1}, {1, 37}, {53, 1}, {4097, 3}, {255, 143}};
    // Without the smart route a host asks for whole pixels only.
    const bool isClassic = (LinkedEngine::Flags2() & PF_OutFlag2_SUPPORTS_SMART_RENDER) == 0;
    for (const PictureExtent& extent : kExtents) {
        if (isClassic && std::min(extent.width, extent.height) == 1) continue;
        for (const std::uint32_t depth : {8u, 32u}) {
            FrameInput input = TestFrame(depth, 0, extent);
            GiveLayers(trial.effect(), input, extent);
            const std::string words =
                fmt::format("of {}x{} pixels, {}", extent.width, extent.height, WordsOfDepth(depth));
            if (!trial.render(input, words)) return;
        }
    }
    FrameInput input = TestFrame(8);
    GiveLayers(trial.effect(), input, {64, 200});
    if (input.layers.empty() || !trial.render(input, "with layers of another size")) return;
    for (auto& [control, picture] : input.layers) picture = nullptr;
    trial.render(input, "without pictures for its layers");
}

void PlayClassicRoute(Trial& trial) {
    host::HostSettings settings = TestHost();
    settings.route = host::Route::classic;
    if (trial.load(settings)) RenderDepths(trial, {8, 16, 32}, "on the classic route");
}

void PlayPremiere(Trial& trial) {
    host::HostSettings settings = TestHost();
    settings.kind = host::HostKind::premiere;
    if (trial.load(settings)) RenderDepths(trial, {8, 32}, "in Premiere Pro");
}

void PlayDownsampled(Trial& trial) {
    constexpr std::uint32_t kShare = 3;
    host::HostSettings settings = TestHost();
    settings.downsampleX.den = settings.downsampleY.den = kShare;
    if (trial.load(settings)) RenderDepths(trial, {8, 32}, "at a third of the size", kShare);
}

// The first instance between two frames of a second one, whose controls are elsewhere.
void PlayTwoInstances(Trial& trial) {
    if (!trial.load(TestHost())) return;
    LoadedEffect& effect = trial.effect();
    FrameInput input = TestFrame(8);
    GiveLayers(effect, input);
    const auto before = trial.render(input, "of the first of two instances");
    if (!before) return;
    const bool isAdded = trial.attempt("a second instance", "in a second instance", [&] { effect.addInstance(); });
    if (!isAdded) return;
    MoveControls(effect);
    if (!trial.render(input, "of a second instance, with other values")) return;
    effect.selectInstance(0);
    const auto after = trial.render(input, "of the first instance, after a second one");
    if (after && before->tightBytes() != after->tightBytes())
        trial.report("render/instances-share",
                     "a frame is another one after a second instance has rendered with other values");
}

}  // namespace quillon::cli
