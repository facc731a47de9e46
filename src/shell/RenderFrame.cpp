// The render phase, which both routes end in.

#include <cstring>

#include "shell/EngineTurn.h"
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

// Notes the frame's size in the block of an instance that asks for it.
void RecordFrame(const PF_InData& in, const FrameExtent& extent, std::uint32_t depth) {
    SequenceData* const block = LiveBlockOf(in.sequence_data);
    if (!block || !block->recordFrameSize) return;
    block->lastWidth = extent.width;
    block->lastHeight = extent.height;
    block->lastDepth = depth;
}

// Where a frame's pixels come from and go to. Asked of the host before the engine's turn.
struct FrameWorlds {
    FrameWorlds(PF_InData& in, PF_EffectWorld& inputWorld, PF_EffectWorld& outputWorld, std::uint32_t depth) {
        WorldPixels found;
        if (!IsPremiere(in)) {
            const SuiteHold suite(in.pica_basicP, suites::kPixelData);
            isSuiteMissing = !suite;
            if (suite) {
                found = PixelsOf(suite, inputWorld);
                output = PixelsOf(suite, outputWorld);
            }
        }
        input = InputPixels(in, found, inputWorld, depth);
    }

    // Throws the int 13 where the host lacks "PF Pixel Data Suite".
    void requirePixels() const {
        if (isSuiteMissing) throw int{A_Err_MISSING_SUITE};
    }

    LayerPixels input;
    WorldPixels output;  // of After Effects
    bool isSuiteMissing = false;
};

}  // namespace

PF_Err renderFrame(PF_InData& in, PF_OutData& out, PF_ParamDef** params, PF_EffectWorld* input,
                   PF_EffectWorld& output) {
    if (!input && params && params[0]) input = &params[0]->u.ld;
    if (!input) return PF_Err_NONE;
    const std::uint32_t depth = worldDepth(in, out, *input);
    const std::uint32_t outputDepth = worldDepth(in, out, output);
    if (!LiveBlockOf(in.sequence_data)) return PassThrough(in, *input, output);

    SuiteCache cache(in.pica_basicP);
    const FrameExtent extent = RenderExtent(in, output);
    const PF_Err fillError = ClearAround(in, output, extent);
    RecordFrame(in, extent, depth);
    const ParameterSweep sweep = readAllParameters(in, /*withLayers=*/true, cache);
    const FrameWorlds worlds(in, *input, output, depth);
    {
        const EngineTurn turn(in.sequence_data, GLUse::locked);
        if (!turn.hasGL()) return PF_Err_INTERNAL_STRUCT_DAMAGED;
        worlds.requirePixels();
        turn.setComposition();
        turn->setInputOrigin(static_cast<std::uint32_t>(output.origin_x), static_cast<std::uint32_t>(output.origin_y));
        sweep.apply(turn);
        transferInput(turn, worlds.input, kInputLayer);
        const double time = static_cast<double>(in.current_time) / static_cast<double>(in.time_scale);
        const float aspect =
            static_cast<float>(output.pix_aspect_ratio.num) / static_cast<float>(output.pix_aspect_ratio.den);
        turn->draw(time, extent.width, extent.height, depth, aspect);

        const MappedResult mapped(*turn);
        if (mapped.get()) {
            const MappedFrame frame{static_cast<const std::byte*>(mapped.get()), extent, depth};
            writeOutput(in, output, worlds.output, outputDepth, frame);
            return fillError;
        }
    }
    return fillError != PF_Err_NONE ? fillError : PassThrough(in, *input, output);
}

}  // namespace quillon
