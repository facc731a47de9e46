// From an effect to its layer, composition and the composition's size; and the registration.

#include "host/HostSession.h"
#include "host/HostTables.h"
#include "host/ObjectReferences.h"

namespace quillon::host {

namespace {

// One of each is enough: an instance only passes them on to the next question.
char layerPlace, compPlace, itemPlace;

PF_Err EffectLayer(PF_ProgPtr effectRef, AEGP_LayerH* out) {
    const CallbackScope scope(effectRef, Callback::effectLayer);
    if (!scope) return scope.error();
    if (!out) return scope.refuse("the effect's layer is asked for into nowhere");
    *out = reinterpret_cast<AEGP_LayerH>(&layerPlace);
    return PF_Err_NONE;
}

PF_Err NewEffect(AEGP_PluginID plugin, PF_ProgPtr effectRef, AEGP_EffectRefH* out) {
    const CallbackScope scope(effectRef, Callback::newEffect, plugin);
    if (!scope) return scope.error();
    if (plugin != kPluginId || !out) return scope.refuse("an effect reference is asked for by an unknown plug-in id");
    *out = MakeReference<AEGP_EffectRefH>(*scope, {.kind = kObjectEffect});
    return PF_Err_NONE;
}

A_Err ParentComp(AEGP_LayerH layer, AEGP_CompH* out) {
    const CallbackScope scope(Callback::parentComp);
    if (!scope) return scope.error();
    if (static_cast<void*>(layer) != &layerPlace || !out) return scope.refuse("an unknown layer is passed");
    *out = reinterpret_cast<AEGP_CompH>(&compPlace);
    return PF_Err_NONE;
}

A_Err CompItem(AEGP_CompH comp, AEGP_ItemH* out) {
    const CallbackScope scope(Callback::compItem);
    if (!scope) return scope.error();
    if (static_cast<void*>(comp) != &compPlace || !out) return scope.refuse("an unknown composition is passed");
    *out = reinterpret_cast<AEGP_ItemH>(&itemPlace);
    return PF_Err_NONE;
}

A_Err ItemDimensions(AEGP_ItemH item, A_long* width, A_long* height) {
    const CallbackScope scope(Callback::itemDimensions);
    if (!scope) return scope.error();
    if (static_cast<void*>(item) != &itemPlace || !width || !height) return scope.refuse("an unknown item is passed");
    *width = scope->session.settings().compWidth;
    *height = scope->session.settings().compHeight;
    return PF_Err_NONE;
}

A_Err ItemAspect(AEGP_ItemH item, A_Ratio* out) {
    const CallbackScope scope(Callback::itemAspect);
    if (!scope) return scope.error();
    if (static_cast<void*>(item) != &itemPlace || !out) return scope.refuse("an unknown item is passed");
    const PF_RationalScale& aspect = scope->session.settings().compPixelAspect;
    *out = {aspect.num, aspect.den};
    return PF_Err_NONE;
}

A_Err RegisterAegp(AEGP_GlobalRefcon, const A_char* name, AEGP_PluginID* out) {
    const CallbackScope scope(Callback::registerAegp, 0, name ? name : "");
    if (!scope) return scope.error();
    if (!name || !out) return scope.refuse("a registration without a name or a place for the id");
    scope->session.record([&](Records& records) { records.aegpNames.emplace_back(name); });
    *out = kPluginId;
    return PF_Err_NONE;
}

A_Err DisposeEffect(AEGP_EffectRefH effect) {
    const CallbackScope scope(Callback::disposeEffect);
    return scope.isInCall() ? GiveBack(scope, effect, kObjectEffect) : scope.error();
}

}  // namespace

std::span<const SuiteOffer> AegpProjectSuites() {
    static const AEGP_PFInterfaceSuite1 kInterface{EffectLayer, NewEffect};
    static const auto kLayer =
        MakeTable<AEGP_LayerSuite5>([](auto& table) { table.AEGP_GetLayerParentComp = ParentComp; });
    static const auto kComp = MakeTable<AEGP_CompSuite4>([](auto& table) { table.AEGP_GetItemFromComp = CompItem; });
    static const auto kItem = MakeTable<AEGP_ItemSuite6>([](auto& table) {
        table.AEGP_GetItemDimensions = ItemDimensions;
        table.AEGP_GetItemPixelAspectRatio = ItemAspect;
    });
    static const auto kUtility =
        MakeTable<AEGP_UtilitySuite3>([](auto& table) { table.AEGP_RegisterWithAEGP = RegisterAegp; });
    static const auto kEffect =
        MakeTable<AEGP_EffectSuite3>([](auto& table) { table.AEGP_DisposeEffect = DisposeEffect; });
    static const SuiteOffer kOffers[] = {
        OfferOf(suites::kAegpInterface, true, false, kInterface), OfferOf(suites::kAegpLayer, true, false, kLayer),
        OfferOf(suites::kAegpComp, true, false, kComp),           OfferOf(suites::kAegpItem, true, false, kItem),
        OfferOf(suites::kAegpUtility, true, false, kUtility),     OfferOf(suites::kAegpEffect, true, false, kEffect),
    };
    return kOffers;
}

}  // namespace quillon::host
