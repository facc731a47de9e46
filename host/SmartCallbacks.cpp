// The callbacks of the smart route.

#include "host/HostSession.h"
#include "host/HostTables.h"
#include "host/Rectangles.h"
#include "host/SmartFrame.h"

namespace quillon::host {

namespace {

PF_Err CheckOut(const CallbackScope& scope, PF_ParamIndex index, A_long id, const PF_RenderRequest& request,
                PF_CheckoutResult& result) {
    if (!scope) return scope.error();
    SmartWorlds* const worlds = scope->selector.smart;
    if (!worlds || worlds->output) return scope.refuse("checkout_layer outside of the size phase");
    const HostInstance& instance = *scope->selector.instance;
    const bool isLayer = index == 0 || (instance.hasParam(index) && instance.param(index).param_type == PF_Param_LAYER);
    if (!isLayer) return PF_Err_INVALID_INDEX;
    if (worlds->checkouts.contains(id)) return scope.refuse("two checkouts have the same id");

    const PF_LRect layer = worlds->layerRect(instance, index);
    const std::shared_ptr<World> pixels = worlds->layerPixels(instance, index);
    result = {};
    result.max_result_rect = layer;
    result.result_rect = Intersection(request.rect, layer);
    result.par = pixels ? pixels->pixelAspect : scope->session.settings().layerPixelAspect;
    result.ref_width = layer.right - layer.left;
    result.ref_height = layer.bottom - layer.top;
    worlds->checkouts[id] = {.index = index, .resultRect = result.result_rect};
    return PF_Err_NONE;
}

PF_Err CheckoutLayer(PF_ProgPtr effectRef, PF_ParamIndex index, A_long id, const PF_RenderRequest* request, A_long time,
                     A_long timeStep, A_u_long timeScale, PF_CheckoutResult* result) {
    const CallbackScope scope(effectRef, Callback::checkoutLayer, id);
    if (!scope.isInCall()) return scope.error();
    if (!request || !result) return scope.refuse("checkout_layer without request or result");
    const PF_Err error = CheckOut(scope, index, id, *request, *result);
    const PF_CheckoutResult answered = error == PF_Err_NONE ? *result : PF_CheckoutResult{};
    scope->session.record([&](Records& records) {
        records.layerCheckouts.push_back(
            {index, id, *request, time, timeStep, timeScale, error, answered.result_rect, answered.max_result_rect});
    });
    return error;
}

// The part of the layer that was checked out, as a separate world where it is not the whole layer.
void MakePixels(SmartWorlds& worlds, SmartWorlds::Checkout& checkout, const SelectorCall& call) {
    const HostInstance& instance = *call.selector.instance;
    const std::shared_ptr<World> layer = worlds.layerPixels(instance, checkout.index);
    const PF_LRect whole = worlds.layerRect(instance, checkout.index);
    const PF_LRect& part = checkout.resultRect;
    const bool isWhole = IsInside(whole, part);
    checkout.pixels =
        isWhole ? layer : layer->cut(Offset(part, -whole.left, -whole.top), call.session.settings().rowPaddingPixels);
    checkout.record = checkout.pixels->record();
    checkout.record.origin_x = whole.left - part.left;
    checkout.record.origin_y = whole.top - part.top;
}

PF_Err CheckoutPixels(PF_ProgPtr effectRef, A_long id, PF_EffectWorld** pixels) {
    const CallbackScope scope(effectRef, Callback::checkoutPixels, id);
    if (!scope) return scope.error();
    SmartWorlds* const worlds = scope->selector.smart;
    if (!worlds || scope->selector.cmd != PF_Cmd_SMART_RENDER || !pixels)
        return scope.refuse("checkout_layer_pixels outside of the render phase");
    const auto found = worlds->checkouts.find(id);
    if (found == worlds->checkouts.end()) return scope.refuse("pixels are asked for that were not checked out");
    SmartWorlds::Checkout& checkout = found->second;
    *pixels = nullptr;
    if (IsEmpty(checkout.resultRect)) return PF_Err_NONE;
    if (!checkout.pixels) MakePixels(*worlds, checkout, *scope);
    scope->ledger.worldShown(checkout.pixels);
    *pixels = &checkout.record;
    return PF_Err_NONE;
}

PF_Err CheckinPixels(PF_ProgPtr effectRef, A_long id) {
    const CallbackScope scope(effectRef, Callback::checkinPixels, id);
    return scope.error();
}

PF_Err CheckoutOutput(PF_ProgPtr effectRef, PF_EffectWorld** output) {
    const CallbackScope scope(effectRef, Callback::checkoutOutput);
    if (!scope) return scope.error();
    SmartWorlds* const worlds = scope->selector.smart;
    if (!worlds || !worlds->output || !output) return scope.refuse("checkout_output outside of the render phase");
    scope->ledger.worldShown(worlds->output);
    *output = &worlds->outputRecord;
    return PF_Err_NONE;
}

}  // namespace

PF_PreRenderCallbacks* PreRenderCallbacks() {
    static PF_PreRenderCallbacks table{CheckoutLayer, nullptr};
    return &table;
}

PF_SmartRenderCallbacks* SmartRenderCallbacks() {
    static PF_SmartRenderCallbacks table{CheckoutPixels, CheckinPixels, CheckoutOutput};
    return &table;
}

}  // namespace quillon::host
