#pragma once

#include <cstddef>
#include <cstdint>

#include "hostapi/HostApi.h"
#include "shell/FramePhases.h"

namespace quillon {

// The engine's finished frame: tight rows, the framebuffer's y = 0 first, in GL's channel range.
struct MappedFrame {
    const std::byte* pixels;
    FrameExtent extent;
    std::uint32_t bitDepth;
};

// `worldDepth` is that of the output's pixel format, 0 when it is not known.
//
// Writes the frame into the host's world with the rows turned over, 16-bit channels folded to the host's range. After
// Effects' world takes it at its top left, in the world's own depth; Premiere Pro's in the middle, in the frame's
// depth. Whatever the sizes and depths are, nothing outside of the world is written and nothing behind the frame is
// read. Throws the int 13 without "PF Pixel Data Suite" under After Effects.
void writeOutput(PF_InData& in, PF_EffectWorld& output, std::uint32_t worldDepth, const MappedFrame& frame);

}  // namespace quillon
