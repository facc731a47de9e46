// Planted once: a kibibyte that each frame of the engine loses.

#include <map>

#include "Effects.h"
#include "Ground.h"
#include "LiveGL.h"

namespace quillon::prove {

std::string Load(bool isLong) {
    constexpr A_long kWidth = 64, kHeight = 36;
    constexpr int kWarmUp = 200;
    const int frames = isLong ? 1'000'000 : 10'000;
    const LoadedEffect loaded(ThreePasses());
    host::HostSession session(loaded.effect(), Unrecorded());
    session.start();
    host::HostInstance& instance = session.apply();
    instance.setFloat(1, 0.25);

    std::map<int, std::shared_ptr<host::World>> inputs;
    for (const int depth : {8, 16, 32}) inputs[depth] = WorldOf(session, kWidth, kHeight, depth, 7);
    std::map<std::pair<int, host::Route>, test::Bytes> first;
    std::size_t warm = 0;
    LiveGL warmGL;
    for (int frame = 0; frame < frames; ++frame) {
        const int depth = 8 << frame % 3;
        const host::Route route = frame / 3 % 2 ? host::Route::classic : host::Route::smart;
        const test::Bytes pixels = RenderedBytes(instance, {inputs[depth]}, route);
        const auto [place, isNew] = first.try_emplace({depth, route}, pixels);
        Require(isNew || place->second == pixels,
                "frame " + std::to_string(frame) + " is not as the first of its kind");
        if (frame != kWarmUp) continue;
        warm = ResidentBytes();
        warmGL = CountLiveGL();
    }
    Require(CountLiveGL() == warmGL, "GL objects are left");
    Require(warmGL.contexts == 1, "there is more than one GL context");
    return std::to_string(frames) + " frames, " + RequireLevel(warm, "after frame " + std::to_string(kWarmUp));
}

}  // namespace quillon::prove
