#pragma once

#include <cstdint>

#include "hostapi/HostApi.h"

namespace quillon {

// Fetches the effect's input as it was `framesBack` frames earlier, through the host's render route, and uploads it as
// the layer with the index "all ones less framesBack", so that 0 is the input itself. Nothing for a moment before time
// 0, and nothing where the host cannot give the frame. Needs the GL lock and a selected instance. No selector calls it:
// it stands ready for effects that look back in time. Throws the int 13 when a suite is missing.
void renderUpstream(PF_InData& in, AEGP_PluginID plugin, std::uint32_t framesBack, std::uint32_t bitDepth);

}  // namespace quillon
