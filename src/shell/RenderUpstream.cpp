#include "shell/RenderUpstream.h"

#include "shell/HostCleanup.h"
#include "shell/HostVersion.h"
#include "shell/InputTransfer.h"
#include "shell/Suites.h"

namespace quillon {

namespace {

void TransferReceipt(PF_InData& in, const RequiredSuite<AEGP_RenderSuite4>& render,
                     const RequiredSuite<AEGP_WorldSuite3>& worlds, AEGP_FrameReceiptH receipt, std::uint32_t bitDepth,
                     std::uint32_t index) {
    AEGP_WorldH handle = nullptr;
    if (render->AEGP_GetReceiptWorld(receipt, &handle) != A_Err_NONE || !handle) return;
    PF_EffectWorld world{};
    if (worlds->AEGP_FillOutPFEffectWorld(handle, &world) != A_Err_NONE) return;
    const WorldPixels found = IsPremiere(in) ? WorldPixels() : PixelsOf(in, world);
    const LayerPixels input = InputPixels(in, found, world, bitDepth);
    const EngineTurn turn(in.sequence_data, GLUse::locked);
    if (turn.hasGL()) transferInput(turn, input, index);
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

    AEGP_LayerRenderOptionsH layerOptions = nullptr;
    const AtEnd disposeOptions([&] {
        if (layerOptions) options->AEGP_Dispose(layerOptions);
    });
    AEGP_EffectRefH effect = nullptr;
    const AtEnd disposeEffect([&] {
        if (effect) effects->AEGP_DisposeEffect(effect);
    });
    interface->AEGP_GetNewEffectForEffect(plugin, in.effect_ref, &effect);
    if (!effect) return;
    options->AEGP_NewFromUpstreamOfEffect(plugin, effect, &layerOptions);
    if (!layerOptions) return;
    options->AEGP_SetTime(layerOptions, {static_cast<A_long>(time), in.time_scale});
    AEGP_FrameReceiptH receipt = nullptr;
    const AtEnd checkIn([&] {
        if (receipt) render->AEGP_CheckinFrame(receipt);
    });
    render->AEGP_RenderAndCheckoutLayerFrame(layerOptions, 0, nullptr, nullptr, &receipt);
    if (receipt) TransferReceipt(in, render, worlds, receipt, bitDepth, ~framesBack);
}

}  // namespace quillon
