#pragma once

#include <cstddef>
#include <cstdint>

#include "hostapi/HostApi.h"
#include "shell/FramePhases.h"
#include "shell/Worlds.h"

namespace quillon {

// The engine's finished frame: tight rows, the framebuffer's y = 0 first, in GL's channel range.
struct MappedFrame {
    const std::byte* pixels;
    FrameExtent extent;
    std::uint32_t bitDepth;
};

// Writes the frame into the host's world, rows turned upside down, 16-bit channels folded to the host's range. After
// Effects' world takes it at the top left of `found`, the world's pixels as the host gave them, in their depth; without
// pixels nothing is written. Premiere Pro's world takes it in the middle, in the frame's depth. `worldDepth` is that of
// the world's pixel format, 0 when it is unknown. For all sizes and depths, nothing outside of the world is written and
// nothing past the end of the frame is read. Makes no host call.
void writeOutput(const PF_InData& in, PF_EffectWorld& output, const WorldPixels& found, std::uint32_t worldDepth,
                 const MappedFrame& frame);

}  // namespace quillon
