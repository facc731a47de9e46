// The effect side's suites.

#include <cstring>

#include "host/HostSession.h"
#include "host/HostTables.h"

namespace quillon::host {

namespace {

PF_Err UpdateParamUi(PF_ProgPtr effectRef, PF_ParamIndex index, const PF_ParamDef* def) {
    const CallbackScope scope(effectRef, Callback::updateParamUI, index);
    if (!scope.isInCall()) return scope.error();
    if (!def) return scope.refuse("PF_UpdateParamUI gets no control");
    HostInstance* const instance = scope->selector.instance;
    PF_Err error = scope.error();
    if (error == PF_Err_NONE && (!instance || !instance->hasParam(index))) error = PF_Err_INVALID_INDEX;
    scope->session.record([&](Records& records) { records.paramUIUpdates.push_back({index, *def, error}); });
    if (error != PF_Err_NONE) return error;
    // Only its look: hosts take no value from here.
    PF_ParamDef& own = instance->param(index);
    own.ui_flags = def->ui_flags;
    std::memcpy(own.PF_DEF_NAME, def->PF_DEF_NAME, sizeof(own.PF_DEF_NAME));
    own.PF_DEF_NAME[sizeof(own.PF_DEF_NAME) - 1] = 0;
    return PF_Err_NONE;
}

PF_Err SetOptionsButtonName(PF_ProgPtr effectRef, const A_char* name) {
    const CallbackScope scope(effectRef, Callback::setOptionsButtonName, 0, name ? name : "");
    if (!scope) return scope.error();
    if (!name) return scope.refuse("PF_SetOptionsButtonName gets no name");
    scope->session.record([&](Records& records) { records.optionsButtonNames.emplace_back(name); });
    return PF_Err_NONE;
}

PF_Err FloatingPointColor(PF_ProgPtr effectRef, const PF_ParamDef* def, PF_PixelFloat* out) {
    const PF_ParamIndex index = def ? def->unused : 0;
    const CallbackScope scope(effectRef, Callback::floatingPointColor, index);
    if (!scope) return scope.error();
    const HostInstance* const instance = scope->selector.instance;
    if (!out || !instance || !instance->hasParam(index) || def->param_type != PF_Param_COLOR)
        return scope.refuse("a color is asked of what is no COLOR control of this instance");
    *out = instance->color(index);
    return PF_Err_NONE;
}

template <class Pixel>
PF_Err PixelData(Callback which, int depth, const PF_EffectWorld* world, PF_PixelPtr pixels, Pixel** out) {
    const CallbackScope scope(which);
    if (!scope) return scope.error();
    if (!world || !out) return scope.refuse("pixels are asked of no world");
    *out = nullptr;
    const PF_PixelPtr asked = pixels ? pixels : world->data;
    if (!asked) return PF_Err_NONE;
    const int depthThere = World::DepthOf(asked);
    if (depthThere == 0) return scope.refuse("pixels are asked of a world that no host made");
    if (depthThere == depth) *out = reinterpret_cast<Pixel*>(asked);
    return PF_Err_NONE;
}

PF_Err PixelData8(PF_EffectWorld* world, PF_PixelPtr pixels, PF_Pixel8** out) {
    return PixelData(Callback::pixelData8, 8, world, pixels, out);
}

PF_Err PixelData16(PF_EffectWorld* world, PF_PixelPtr pixels, PF_Pixel16** out) {
    return PixelData(Callback::pixelData16, 16, world, pixels, out);
}

PF_Err PixelDataFloat(PF_EffectWorld* world, PF_PixelPtr pixels, PF_PixelFloat** out) {
    return PixelData(Callback::pixelDataFloat, 32, world, pixels, out);
}

// A layer without pixels has no format: an error, and `out` stays.
PF_Err WorldFormat(const PF_EffectWorld* world, PF_PixelFormat* out) {
    const CallbackScope scope(Callback::worldFormat);
    if (!scope) return scope.error();
    if (!world || !out) return scope.refuse("the format of no world is asked for");
    const int depth = World::DepthOf(world->data);
    if (depth == 0) return PF_Err_BAD_CALLBACK_PARAM;
    *out = depth == 8 ? PF_PixelFormat_ARGB32 : depth == 16 ? PF_PixelFormat_ARGB64 : PF_PixelFormat_ARGB128;
    return PF_Err_NONE;
}

PF_Err SetExtendedTool(PF_ExtendedSuiteTool tool) {
    return CallbackScope(Callback::setExtendedTool, tool).error();
}

}  // namespace

std::span<const SuiteOffer> EffectSuites() {
    static const PF_HandleSuite1 kHandle{NewHandle, LockHandle, UnlockHandle, DisposeHandle};
    static const PF_ParamUtilsSuite3 kParamUtils{UpdateParamUi};
    static const PF_EffectUISuite1 kEffectUi{SetOptionsButtonName};
    static const PF_ColorParamSuite1 kColorParam{FloatingPointColor};
    static const PF_PixelDataSuite1 kPixels{PixelData8, PixelData16, PixelDataFloat};
    static const auto kWorld = MakeTable<PF_WorldSuite2>([](auto& table) { table.PF_GetPixelFormat = WorldFormat; });
    static const auto kHelper =
        MakeTable<PF_HelperSuite2>([](auto& table) { table.PF_SetCurrentExtendedTool = SetExtendedTool; });
    static const SuiteOffer kOffers[] = {
        OfferOf(suites::kHandle, true, true, kHandle),      {suites::kParamUtils.name, 1, 3, true, true, &kParamUtils},
        OfferOf(suites::kEffectUI, true, false, kEffectUi), OfferOf(suites::kColorParam, true, true, kColorParam),
        OfferOf(suites::kPixelData, true, true, kPixels),   OfferOf(suites::kWorld, true, false, kWorld),
        OfferOf(suites::kHelper, true, true, kHelper),
    };
    return kOffers;
}

}  // namespace quillon::host
