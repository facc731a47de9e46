#include "cli/effect/FrameTime.h"

#include <cmath>

namespace quillon::cli {

namespace {

constexpr std::int32_t kFinest = 1000000;

bool IsWhole(double number) {
    return std::fabs(number - std::round(number)) <= 1e-9 * std::fabs(number);
}

}  // namespace

FrameTime TimeOfFrame(std::int32_t frame, double framesPerSecond) {
    FrameTime best;
    for (std::int32_t step = 1; step <= kFinest; step *= 10) {
        const double scale = framesPerSecond * step;
        if ((frame + 1.0) * step > INT32_MAX || scale > INT32_MAX) break;
        if (scale < 0.5) continue;
        best = {frame * step, step, static_cast<std::uint32_t>(std::llround(scale))};
        if (IsWhole(scale)) break;
    }
    return best;
}

FrameTime TimeOfSeconds(double seconds) {
    FrameTime best;
    for (std::int32_t scale = 1000; scale <= kFinest; scale *= 10) {
        const double time = seconds * scale;
        if (std::fabs(time) > INT32_MAX - scale) break;
        best = {static_cast<std::int32_t>(std::llround(time)), scale / 25, static_cast<std::uint32_t>(scale)};
        if (IsWhole(time)) break;
    }
    return best;
}

}  // namespace quillon::cli
