#pragma once

#include <cstdint>

namespace quillon::cli {

// A moment as a host states it: time / scale seconds, and how long a frame lasts there.
struct FrameTime {
    std::int32_t time = 0;
    std::int32_t step = 1;
    std::uint32_t scale = 1;
};

// Frame F at F / fps seconds, exact for rates of up to six decimals that fit into the host's 32 bits.
FrameTime TimeOfFrame(std::int32_t frame, double framesPerSecond);

// A single moment, to a millionth of a second or as close as 32 bits come; frames last 1/25 second there.
FrameTime TimeOfSeconds(double seconds);

// Moments farther from 0 than this have no place in 32 bits.
inline constexpr double kMostSeconds = 2000000;

}  // namespace quillon::cli
