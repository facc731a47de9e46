#include "shell/RenderUpstream.h"

#include "shell/InputTransfer.h"
#include "shell/Suites.h"

namespace quillon {

namespace {

void TransferReceipt(PF_InData& in, const RequiredSuite<AEGP_RenderSuite4>& render,
                     const RequiredSuite<AEGP_WorldSuite3>& worlds, AEGP_FrameReceiptH receipt, std::uint32_t bitDepth,
                     std::uint32_t index) {
    AEGP_WorldH world = nullptr;
    if (render->AEGP_GetReceiptWorld(receipt, &world) != A_Err_NONE || !world) return;
    PF_EffectWorld pixels{};
    if (worlds->AEGP_FillOutPFEffectWorld(world, &pixels) == A_Err_NONE) transferInput(in, pixels, bitDepth, index);
}

}  // namespace

void renderUpstream(PF_InData& in, AEGP_PluginID plugin, std::uint32_t framesBack, std::uint32_t bitDepth) {
    const std::int64_t time = in.current_time - std::int64_t{framesBack} * in.time_step;
    if (time < 0) return;
    const RequiredSuite effects(in.pica_basicP, suites::kAegpEffect);
    const RequiredSuite options(in.pica_basicP, suites::kAegpLayerRenderOptions);
    const RequiredSuite render(in.pica_basicP, suites::kAegpRender);
    const RequiredSuite interface(in.pica_basicP, suites::kAegpInterface);
    const RequiredSuite worlds(in.pica_basicP, suites::kAegpWorld);

    // What the host gives is handed back in the reverse order, also when an upload throws.
    struct Fetched {
        decltype(effects)& effectSuite;
        decltype(options)& optionsSuite;
        decltype(render)& renderSuite;
        AEGP_EffectRefH effect = nullptr;
        AEGP_LayerRenderOptionsH layerOptions = nullptr;
        AEGP_FrameReceiptH receipt = nullptr;
        ~Fetched() {
            if (receipt) renderSuite->AEGP_CheckinFrame(receipt);
            if (effect) effectSuite->AEGP_DisposeEffect(effect);
            if (layerOptions) optionsSuite->AEGP_Dispose(layerOptions);
        }
    } fetched{effects, options, render};

    interface->AEGP_GetNewEffectForEffect(plugin, in.effect_ref, &fetched.effect);
    if (!fetched.effect) return;
    options->AEGP_NewFromUpstreamOfEffect(plugin, fetched.effect, &fetched.layerOptions);
    if (!fetched.layerOptions) return;
    options->AEGP_SetTime(fetched.layerOptions, {static_cast<A_long>(time), in.time_scale});
    render->AEGP_RenderAndCheckoutLayerFrame(fetched.layerOptions, 0, nullptr, nullptr, &fetched.receipt);
    if (fetched.receipt) TransferReceipt(in, render, worlds, fetched.receipt, bitDepth, ~framesBack);
}

}  // namespace quillon
