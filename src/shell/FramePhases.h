#pragma once

#include <cstdint>

#include "hostapi/HostApi.h"
#include "shell/SequenceData.h"
#include "shell/Suites.h"

namespace quillon {

// The size of a picture in pixels.
struct FrameExtent {
    std::uint32_t width;
    std::uint32_t height;

    bool operator==(const FrameExtent&) const = default;
};

// The common heart of both size phases: asks the host for the composition, brings the instance and its values in, and
// asks the script for the output size of an input of this extent, all under the GL lock where the host's version
// allows that. A flat block, or none, has no script to ask: the extent stays.
FrameExtent AskOutputExtent(PF_InData& in, SuiteCache& cache, FrameExtent input);

// The common end of both routes' render: brings input and values to the engine, draws, and writes the result into
// the host's output. `input` null: the first of `params`, or nothing at all.
PF_Err renderFrame(PF_InData& in, PF_OutData& out, PF_ParamDef** params, PF_EffectWorld* input, PF_EffectWorld& output);

// The classic route's frame data under Premiere Pro: the extent that the script draws in.
struct FrameData {
    std::uint32_t width;
    std::uint32_t height;
};
static_assert(sizeof(FrameData) == 8);

}  // namespace quillon
