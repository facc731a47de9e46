// From an effect to its layer, composition and the composition's size; and the registration.

#include "host/HostSession.h"
#include "host/HostTables.h"
#include "host/ObjectReferences.h"

namespace quillon::host {

namespace {

// One of each is enough: an instance only passes them on to the next question.
char layerPlace, compPlace, itemPlace;

PF_Err effectLayer(PF_ProgPtr effectRef, AEGP_LayerH* out) {
    const CallbackScope visit(effectRef, Callback::effectLayer);
    if (!visit) return visit.error();
    if (!out) return visit.refuse("the effect's layer is asked for into nowhere");
    *out = reinterpret_cast<AEGP_LayerH>(&layerPlace);
    return PF_Err_NONE;
}

PF_Err newEffect(AEGP_PluginID plugin, PF_ProgPtr effectRef, AEGP_EffectRefH* out) {
    const CallbackScope visit(effectRef, Callback::newEffect, plugin);
    if (!visit) return visit.error();
    if (plugin != kPluginId || !out) return visit.refuse("an effect reference is asked for by an unknown plug-in id");
    *out = makeReference<AEGP_EffectRefH>(*visit, {.kind = kObjectEffect});
    return PF_Err_NONE;
}

A_Err parentComp(AEGP_LayerH layer, AEGP_CompH* out) {
    const CallbackScope visit(Callback::parentComp);
    if (!visit) return visit.error();
    if (static_cast<void*>(layer) != &layerPlace || !out) return visit.refuse("an unknown layer is passed");
    *out = reinterpret_cast<AEGP_CompH>(&compPlace);
    return PF_Err_NONE;
}

A_Err compItem(AEGP_CompH comp, AEGP_ItemH* out) {
    const CallbackScope visit(Callback::compItem);
    if (!visit) return visit.error();
    if (static_cast<void*>(comp) != &compPlace || !out) return visit.refuse("an unknown composition is passed");
    *out = reinterpret_cast<AEGP_ItemH>(&itemPlace);
    return PF_Err_NONE;
}

A_Err itemDimensions(AEGP_ItemH item, A_long* width, A_long* height) {
    const CallbackScope visit(Callback::itemDimensions);
    if (!visit) return visit.error();
    if (static_cast<void*>(item) != &itemPlace || !width || !height) return visit.refuse("an unknown item is passed");
    *width = visit->session.settings().compWidth;
    *height = visit->session.settings().compHeight;
    return PF_Err_NONE;
}

A_Err itemAspect(AEGP_ItemH item, A_Ratio* out) {
    const CallbackScope visit(Callback::itemAspect);
    if (!visit) return visit.error();
    if (static_cast<void*>(item) != &itemPlace || !out) return visit.refuse("an unknown item is passed");
    const PF_RationalScale& aspect = visit->session.settings().compPixelAspect;
    *out = {aspect.num, aspect.den};
    return PF_Err_NONE;
}

A_Err registerAegp(AEGP_GlobalRefcon, const A_char* name, AEGP_PluginID* out) {
    const CallbackScope visit(Callback::registerAegp, 0, name ? name : "");
    if (!visit) return visit.error();
    if (!name || !out) return visit.refuse("a registration without a name or a place for the id");
    visit->session.record([&](Records& records) { records.aegpNames.emplace_back(name); });
    *out = kPluginId;
    return PF_Err_NONE;
}

A_Err disposeEffect(AEGP_EffectRefH effect) {
    const CallbackScope visit(Callback::disposeEffect);
    return visit.isInCall() ? giveBack(visit, effect, kObjectEffect) : visit.error();
}

}  // namespace

std::span<const SuiteOffer> aegpProjectSuites() {
    static const AEGP_PFInterfaceSuite1 interface { effectLayer, newEffect };
    static const auto layer =
        makeTable<AEGP_LayerSuite5>([](auto& table) { table.AEGP_GetLayerParentComp = parentComp; });
    static const auto comp = makeTable<AEGP_CompSuite4>([](auto& table) { table.AEGP_GetItemFromComp = compItem; });
    static const auto item = makeTable<AEGP_ItemSuite6>([](auto& table) {
        table.AEGP_GetItemDimensions = itemDimensions;
        table.AEGP_GetItemPixelAspectRatio = itemAspect;
    });
    static const auto utility =
        makeTable<AEGP_UtilitySuite3>([](auto& table) { table.AEGP_RegisterWithAEGP = registerAegp; });
    static const auto effect =
        makeTable<AEGP_EffectSuite3>([](auto& table) { table.AEGP_DisposeEffect = disposeEffect; });
    static const SuiteOffer offers[] = {
        offerOf(suites::kAegpInterface, true, false, interface), offerOf(suites::kAegpLayer, true, false, layer),
        offerOf(suites::kAegpComp, true, false, comp),           offerOf(suites::kAegpItem, true, false, item),
        offerOf(suites::kAegpUtility, true, false, utility),     offerOf(suites::kAegpEffect, true, false, effect),
    };
    return offers;
}

}  // namespace quillon::host
