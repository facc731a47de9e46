#include "cli/keyframes/KeyTrack.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace quillon::cli {

bool KeyTrack::add(std::int32_t frame, const ControlValue& value, Interpolation interpolation) {
    return keys.insert({frame, {value, interpolation}}).second;
}

ControlValue KeyTrack::at(double frame) const {
    // Frames of --frames have nine digits; what is beyond them is beyond every key.
    const auto next = keys.upper_bound(static_cast<std::int32_t>(std::floor(std::clamp(frame, -1e9, 1e9))));
    if (next == keys.begin()) return next->second.value;
    const auto& [startFrame, start] = *std::prev(next);
    if (next == keys.end() || start.interpolation == Interpolation::hold) return start.value;
    double share = (frame - startFrame) / (static_cast<double>(next->first) - startFrame);
    if (start.interpolation == Interpolation::smooth) share = share * share * (3 - 2 * share);
    ControlValue value = start.value;  // with its integer
    for (std::size_t i = 0; i < std::size(value.numbers); ++i) {
        const double from = start.value.numbers[i];
        value.numbers[i] = static_cast<float>(from + (next->second.value.numbers[i] - from) * share);
    }
    return value;
}

}  // namespace quillon::cli
