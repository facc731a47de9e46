#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "frei0r/ControlValues.h"

namespace quillon::frei0r {

// Pixels are words of four bytes in memory order: R, G, B, A at the host, A, R, G, B in the engine.

// Gives the engine's form of the host's pixels; `to` has room for as many.
void ToEngineOrder(std::span<const std::uint32_t> from, std::uint32_t* to);

// Where the input's top left corner is in an output of another size: the engine centers one on the other, as hosts of
// larger outputs do.
struct FrameOrigin {
    std::int32_t x = 0;
    std::int32_t y = 0;
};
FrameOrigin OriginIn(FrameSize output, FrameSize frame);

// Rows of a frame from the top: the first one, and the one after the last.
struct RowRange {
    std::uint32_t first = 0;
    std::uint32_t end = 0;
};

// Fills these rows of the host's frame, tight rows from the top, with the engine's output, tight rows from the bottom:
// the part of it that the input had. Where the output is smaller, the rest is transparent black.
void WriteFrame(const std::uint32_t* output, FrameSize outputSize, std::uint32_t* frame, FrameSize frameSize,
                RowRange rows);

}  // namespace quillon::frei0r
