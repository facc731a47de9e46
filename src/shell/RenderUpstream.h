#pragma once

#include <cstdint>

#include "hostapi/HostApi.h"

namespace quillon {

// Fetches the effect's input as it was `framesBack` frames earlier, through the host's render route, and uploads it as
// the layer with the index "all ones less framesBack", so that 0 is the input itself. Does nothing for a time before 0,
// where the host has no such frame, or without the GL lock. Throws the int 13 when a suite is missing. No selector
// calls it yet: it serves effects that look back in time.
void renderUpstream(PF_InData& in, AEGP_PluginID plugin, std::uint32_t framesBack, std::uint32_t bitDepth);

}  // namespace quillon
