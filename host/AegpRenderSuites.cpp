// Frames of the layer below an effect, at any time.

#include "host/HostSession.h"
#include "host/HostTables.h"
#include "host/ObjectReferences.h"

namespace quillon::host {

namespace {

A_Err NewOptions(AEGP_PluginID plugin, AEGP_EffectRefH effect, AEGP_LayerRenderOptionsH* out) {
    const CallbackScope scope(Callback::newRenderOptions, plugin);
    if (!scope) return scope.error();
    if (plugin != kPluginId || !out) return scope.refuse("render options are asked for by an unknown plug-in id");
    if (!ObjectOf(scope, effect, kObjectEffect)) return PF_Err_BAD_CALLBACK_PARAM;
    *out = MakeReference<AEGP_LayerRenderOptionsH>(*scope, {.kind = kObjectRenderOptions});
    return PF_Err_NONE;
}

A_Err DisposeOptions(AEGP_LayerRenderOptionsH options) {
    const CallbackScope scope(Callback::disposeRenderOptions);
    return scope.isInCall() ? GiveBack(scope, options, kObjectRenderOptions) : scope.error();
}

A_Err SetTime(AEGP_LayerRenderOptionsH options, A_Time time) {
    const CallbackScope scope(Callback::setRenderTime, time.value);
    if (!scope) return scope.error();
    HostObject* const object = ObjectOf(scope, options, kObjectRenderOptions);
    if (!object) return PF_Err_BAD_CALLBACK_PARAM;
    object->time = time;
    return PF_Err_NONE;
}

std::shared_ptr<World> UpstreamFrame(const SelectorCall& call, A_Time time) {
    const auto& hook = call.session.hooks().upstream;
    if (hook && call.selector.instance) return hook(*call.selector.instance, time);
    return call.selector.frame ? call.selector.frame->input : nullptr;
}

// Without a frame there: an error and no receipt.
A_Err RenderLayerFrame(AEGP_LayerRenderOptionsH options, A_Boolean, AEGP_RenderSuiteCheckForCancel, AEGP_CancelRefcon,
                       AEGP_FrameReceiptH* out) {
    const CallbackScope scope(Callback::renderLayerFrame);
    if (!scope) return scope.error();
    const HostObject* const object = ObjectOf(scope, options, kObjectRenderOptions);
    if (!object || !out) return PF_Err_BAD_CALLBACK_PARAM;
    scope->session.record([&](Records& records) { records.upstreamTimes.push_back(object->time); });
    std::shared_ptr<World> world = UpstreamFrame(*scope, object->time);
    if (!world) return A_Err_GENERIC;
    scope->ledger.worldShown(world);
    *out = MakeReference<AEGP_FrameReceiptH>(*scope,
                                             {.kind = kObjectReceipt, .time = object->time, .world = std::move(world)});
    return PF_Err_NONE;
}

A_Err CheckinFrame(AEGP_FrameReceiptH receipt) {
    const CallbackScope scope(Callback::checkinFrame);
    return scope.isInCall() ? GiveBack(scope, receipt, kObjectReceipt) : scope.error();
}

// A receipt's world goes by the receipt's own address, and so ends with it.
A_Err ReceiptWorld(AEGP_FrameReceiptH receipt, AEGP_WorldH* out) {
    const CallbackScope scope(Callback::receiptWorld);
    if (!scope) return scope.error();
    HostObject* const object = ObjectOf(scope, receipt, kObjectReceipt);
    if (!object || !out) return PF_Err_BAD_CALLBACK_PARAM;
    *out = reinterpret_cast<AEGP_WorldH>(object);
    return PF_Err_NONE;
}

A_Err FillOutWorld(AEGP_WorldH world, PF_EffectWorld* out) {
    const CallbackScope scope(Callback::fillOutWorld);
    if (!scope) return scope.error();
    const HostObject* const object = ObjectOf(scope, world, kObjectReceipt);
    if (!object || !out) return PF_Err_BAD_CALLBACK_PARAM;
    *out = object->world->record();
    return PF_Err_NONE;
}

}  // namespace

std::span<const SuiteOffer> AegpRenderSuites() {
    static const auto kOptions = MakeTable<AEGP_LayerRenderOptionsSuite1>([](auto& table) {
        table.AEGP_NewFromUpstreamOfEffect = NewOptions;
        table.AEGP_Dispose = DisposeOptions;
        table.AEGP_SetTime = SetTime;
    });
    static const auto kRender = MakeTable<AEGP_RenderSuite4>([](auto& table) {
        table.AEGP_RenderAndCheckoutLayerFrame = RenderLayerFrame;
        table.AEGP_CheckinFrame = CheckinFrame;
        table.AEGP_GetReceiptWorld = ReceiptWorld;
    });
    static const auto kWorld =
        MakeTable<AEGP_WorldSuite3>([](auto& table) { table.AEGP_FillOutPFEffectWorld = FillOutWorld; });
    static const SuiteOffer kOffers[] = {
        OfferOf(suites::kAegpLayerRenderOptions, true, false, kOptions),
        OfferOf(suites::kAegpRender, true, false, kRender),
        OfferOf(suites::kAegpWorld, true, false, kWorld),
    };
    return kOffers;
}

}  // namespace quillon::host
