#pragma once

#include <cstdint>

#include "cli/pictures/Picture.h"

namespace quillon::cli {

// Its extent where nobody asks for another one.
inline constexpr std::uint32_t kChartWidth = 960;
inline constexpr std::uint32_t kChartHeight = 540;

// The tool's own test picture, the same on every machine: gray and color ramps, color patches, fine lines, round
// shapes, lights on a dark ground, and soft transparent parts. No two of its corners look alike, so that a turned or
// mirrored picture shows. Floats 0 to 1 in the order R, G, B, A.
//
// As footage the star turns, and lights and round shapes go to the right and back. `motion` is how much of that is
// over, from 0 to 1, which are alike.
Picture DrawChart(std::uint32_t width, std::uint32_t height, float motion = 0);

}  // namespace quillon::cli
