// The render phase, which both routes end in.

#include <cstring>

#include "engine/AEQuillon2.h"
#include "engine/EngineLock.h"
#include "shell/FramePhases.h"
#include "shell/HostVersion.h"
#include "shell/InputTransfer.h"
#include "shell/OutputTransfer.h"
#include "shell/ParameterTransfer.h"
#include "shell/Worlds.h"

namespace quillon {

namespace {

PF_Err PassThrough(PF_InData& in, PF_EffectWorld& input, PF_EffectWorld& output) {
    return in.utils->copy(in.effect_ref, &input, &output, nullptr, nullptr);
}

// The extent that the script draws in: the output's, or under Premiere Pro that of the frame data.
FrameExtent RenderExtent(const PF_InData& in, const PF_EffectWorld& output) {
    FrameExtent extent{static_cast<std::uint32_t>(output.width), static_cast<std::uint32_t>(output.height)};
    if (IsPremiere(in) && in.frame_data && *in.frame_data) {
        FrameData data;
        std::memcpy(&data, *in.frame_data, sizeof data);
        extent = {data.width, data.height};
    }
    return extent;
}

// Under Premiere Pro a world that the frame does not fill is cleared to transparent black first.
PF_Err ClearAround(PF_InData& in, PF_EffectWorld& output, const FrameExtent& extent) {
    const bool isFilled = extent.width >= static_cast<std::uint32_t>(output.width) &&
                          extent.height >= static_cast<std::uint32_t>(output.height);
    if (!IsPremiere(in) || isFilled) return PF_Err_NONE;
    const PF_Pixel transparent{};
    return in.utils->fill(in.effect_ref, &transparent, nullptr, &output);
}

}  // namespace

PF_Err renderFrame(PF_InData& in, PF_OutData& out, PF_ParamDef** params, PF_EffectWorld* input,
                   PF_EffectWorld& output) {
    if (!input && params && params[0]) input = &params[0]->u.ld;
    if (!input) return PF_Err_NONE;
    const std::uint32_t depth = worldDepth(in, out, *input);
    const std::uint32_t outputDepth = worldDepth(in, out, output);
    SequenceData* block = LiveBlockOf(in.sequence_data);
    if (!block) return PassThrough(in, *input, output);

    IPlugin& engine = AEQuillon2::instance();
    SuiteCache cache(in.pica_basicP);
    engine.selectSequence(block->handle);
    engine.setContextExtent(block->compWidth, block->compHeight, block->compAspect);
    engine.setInputOrigin(static_cast<std::uint32_t>(output.origin_x), static_cast<std::uint32_t>(output.origin_y));
    const FrameExtent extent = RenderExtent(in, output);
    const PF_Err fillError = ClearAround(in, output, extent);
    if (block->recordFrameSize) {
        block->lastWidth = extent.width;
        block->lastHeight = extent.height;
        block->lastDepth = depth;
    }
    readAllParameters(in, /*withLayers=*/true, cache);

    const EngineLock lock(engine);
    if (!lock.isHeld()) return PF_Err_INTERNAL_STRUCT_DAMAGED;
    transferInput(in, *input, depth, kInputLayer);
    const double time = static_cast<double>(in.current_time) / static_cast<double>(in.time_scale);
    const float aspect =
        static_cast<float>(output.pix_aspect_ratio.num) / static_cast<float>(output.pix_aspect_ratio.den);
    engine.draw(time, extent.width, extent.height, depth, aspect);

    const MappedResult mapped(engine);
    if (mapped.get()) {
        writeOutput(in, output, outputDepth, {static_cast<const std::byte*>(mapped.get()), extent, depth});
        return fillError;
    }
    return fillError != PF_Err_NONE ? fillError : PassThrough(in, *input, output);
}

}  // namespace quillon
