// The size phases of both routes: the script says how large its output is, and the host gets the answer.

#include <cstddef>
#include <cstring>

#include "shell/CompInfo.h"
#include "shell/EngineTurn.h"
#include "shell/FramePhases.h"
#include "shell/HostVersion.h"
#include "shell/ParameterTransfer.h"
#include "shell/Selectors.h"
#include "shell/SmartExtents.h"
#include "shell/Worlds.h"

namespace quillon {

FrameExtent AskOutputExtent(PF_InData& in, SuiteCache& cache, FrameExtent input) {
    SequenceData* block = LiveBlockOf(in.sequence_data);
    if (!block) return input;
    CompInfo composition{block->compWidth, block->compHeight, block->compAspect};
    queryCompInfo(in, cache, composition);
    block = LiveBlockOf(in.sequence_data);
    if (!block) return input;
    block->compWidth = composition.width;
    block->compHeight = composition.height;
    block->compAspect = composition.pixelAspect;
    const ParameterSweep sweep = readAllParameters(in, /*withLayers=*/false, cache);

    // The oldest hosts' size phases run the script with no GL context current.
    const EngineTurn turn(in.sequence_data, IsAfterEffectsBefore(in, 13, 2) ? GLUse::none : GLUse::locked);
    turn.setComposition();
    sweep.apply(turn);
    FrameExtent extent = input;
    turn->preRender(input.width, input.height, &extent.width, &extent.height);
    return extent;
}

namespace {

constexpr A_long kProbeId = 0x123455;
constexpr A_long kPixelsId = 0x123456;

// A width in the layer's pixel aspect, rounded like ScaleBy.
std::uint32_t ScaleByAspect(std::uint32_t width, const PF_RationalScale& aspect) {
    const std::uint32_t denominator = aspect.den;
    if (denominator == 0) return width;
    return (static_cast<std::uint32_t>(aspect.num) * width + denominator / 2 - 1) / denominator;
}

void FrameSetupAfterEffects(PF_InData& in, PF_OutData& out, PF_ParamDef** params, SuiteCache& cache) {
    const PF_LayerDef& layer = params[0]->u.ld;
    const FrameExtent input{static_cast<std::uint32_t>(layer.width), static_cast<std::uint32_t>(layer.height)};
    const FrameExtent asked = AskOutputExtent(in, cache, input);
    FrameExtent scaled{ScaleBy(asked.width, in.downsample_x), ScaleBy(asked.height, in.downsample_y)};
    if (asked != input) scaled.width = ScaleByAspect(scaled.width, in.pixel_aspect_ratio);
    if (scaled != input) {
        out.width = static_cast<A_long>(scaled.width);
        out.height = static_cast<A_long>(scaled.height);
        out.origin.h = CenteredOrigin(scaled.width, input.width);
        out.origin.v = CenteredOrigin(scaled.height, input.height);
    }
    out.frame_data = nullptr;
}

void FrameSetupPremiere(PF_InData& in, PF_OutData& out, SuiteCache& cache) {
    const FrameExtent input{static_cast<std::uint32_t>(in.width), static_cast<std::uint32_t>(in.height)};
    const FrameExtent asked = AskOutputExtent(in, cache, input);
    FrameExtent scaled{ScaleBy(asked.width, in.downsample_x), ScaleBy(asked.height, in.downsample_y)};
    FrameExtent scaledInput{ScaleBy(input.width, in.downsample_x), ScaleBy(input.height, in.downsample_y)};
    if (asked != input) {
        scaled.width = ScaleByAspect(scaled.width, in.pixel_aspect_ratio);
        scaledInput.width = ScaleByAspect(scaledInput.width, in.pixel_aspect_ratio);
        if (static_cast<std::uint32_t>(out.width) < scaled.width ||
            static_cast<std::uint32_t>(out.height) < scaled.height) {
            out.width = static_cast<A_long>(scaled.width);
            out.height = static_cast<A_long>(scaled.height);
            out.origin.h = CenteredOrigin(scaled.width, scaledInput.width);
            out.origin.v = CenteredOrigin(scaled.height, scaledInput.height);
        }
    }
    PF_Handle handle = cache.get(suites::kHandle).host_new_handle(sizeof(FrameData));
    if (handle && *handle) {
        const FrameData data{scaled.width, scaled.height};
        std::memcpy(*handle, &data, sizeof data);
    }
    out.frame_data = handle;
}

}  // namespace

PF_Err FrameSetup(PF_InData& in, PF_OutData& out, PF_ParamDef** params) {
    SuiteCache cache(in.pica_basicP);
    if (IsPremiere(in))
        FrameSetupPremiere(in, out, cache);
    else if (params && params[0])
        FrameSetupAfterEffects(in, out, params, cache);
    return PF_Err_NONE;
}

PF_Err FrameSetdown(PF_InData& in, PF_OutData* out) {
    if (!out || !out->frame_data) return PF_Err_NONE;
    SuiteCache cache(in.pica_basicP);
    cache.get(suites::kHandle).host_dispose_handle(out->frame_data);
    out->frame_data = nullptr;
    return PF_Err_NONE;
}

PF_Err SmartPreRender(PF_InData& in, PF_PreRenderExtra& extra) {
    SuiteCache cache(in.pica_basicP);
    const PF_LRect requested = extra.input->output_request.rect;
    PF_RenderRequest request = extra.input->output_request;
    request.channel_mask = PF_ChannelMask_ARGB;
    request.preserve_rgb_of_zero_alpha = 1;
    const auto checkOut = [&](A_long id, const PF_LRect& rect, PF_CheckoutResult& result) {
        request.rect = rect;
        return extra.cb->checkout_layer(in.effect_ref, 0, id, &request, in.current_time, in.time_step, in.time_scale,
                                        &result);
    };

    // The probe asks for nothing, to learn how large the layer is. The script is asked even where the probe fails.
    PF_CheckoutResult probe{};
    PF_Err error = checkOut(kProbeId, {}, probe);
    const PF_LRect layer = probe.max_result_rect;
    const FrameExtent asked = AskOutputExtent(in, cache, ExtentOf(layer));
    AnswerExtents(*extra.output, requested, layer, asked);

    if (error == PF_Err_NONE) {
        PF_CheckoutResult pixels{};
        error = checkOut(kPixelsId, layer, pixels);
    }
    return error;
}

PF_Err SmartRender(PF_InData& in, PF_OutData& out, PF_ParamDef** params, PF_SmartRenderExtra& extra) {
    PF_EffectWorld* input = nullptr;
    PF_EffectWorld* output = nullptr;
    PF_Err error = extra.cb->checkout_layer_pixels(in.effect_ref, kPixelsId, &input);
    if (error != PF_Err_NONE) return error;
    error = extra.cb->checkout_output(in.effect_ref, &output);
    if (error != PF_Err_NONE || !output) return error;
    return renderFrame(in, out, params, input, *output);
}

PF_Err Render(PF_InData& in, PF_OutData& out, PF_ParamDef** params, PF_LayerDef& output) {
    return renderFrame(in, out, params, nullptr, output);
}

}  // namespace quillon
