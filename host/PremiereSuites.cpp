// The suites that only Premiere Pro has.

#include "host/HostSession.h"
#include "host/HostTables.h"

namespace quillon::host {

namespace {

constexpr PrTimelineID kTimeline = 815;

PF_Err AddPixelFormat(PF_ProgPtr effectRef, PrPixelFormat format) {
    const CallbackScope scope(effectRef, Callback::addPixelFormat, format);
    if (!scope) return scope.error();
    scope->session.record([&](Records& records) { records.pixelFormats.push_back(format); });
    return PF_Err_NONE;
}

PF_Err ClearPixelFormats(PF_ProgPtr effectRef) {
    const CallbackScope scope(effectRef, Callback::clearPixelFormats);
    if (!scope) return scope.error();
    scope->session.record([&](Records& records) { records.pixelFormats.clear(); });
    return PF_Err_NONE;
}

PF_Err PremiereFormat(PF_EffectWorld* world, PrPixelFormat* out) {
    const CallbackScope scope(Callback::premiereFormat);
    if (!scope) return scope.error();
    if (!world || !out) return scope.refuse("the format of no world is asked for");
    const int depth = World::DepthOf(world->data);
    if (depth == 0) return PF_Err_BAD_CALLBACK_PARAM;
    *out = depth == 8    ? PrPixelFormat_ARGB_4444_8u
           : depth == 16 ? PrPixelFormat_ARGB_4444_16u
                         : PrPixelFormat_ARGB_4444_32f;
    return PF_Err_NONE;
}

PF_Err ContainingTimeline(PF_ProgPtr effectRef, PrTimelineID* out) {
    const CallbackScope scope(effectRef, Callback::containingTimeline);
    if (!scope) return scope.error();
    if (!out) return scope.refuse("the timeline is asked for into nowhere");
    *out = kTimeline;
    return PF_Err_NONE;
}

prSuiteError FrameRect(PrTimelineID timeline, prRect* out) {
    const CallbackScope scope(Callback::frameRect);
    if (!scope) return scope.error();
    if (timeline != kTimeline || !out) return scope.refuse("the frame of an unknown timeline is asked for");
    // Not at 0, so that a size read from only one edge is seen.
    constexpr csSDK_int32 kLeft = 7, kTop = 5;
    const HostSettings& settings = scope->session.settings();
    out->left = kLeft;
    out->top = kTop;
    out->right = kLeft + settings.compWidth;
    out->bottom = kTop + settings.compHeight;
    return PF_Err_NONE;
}

prSuiteError SequenceAspect(PrTimelineID timeline, csSDK_uint32* num, csSDK_uint32* den) {
    const CallbackScope scope(Callback::sequenceAspect);
    if (!scope) return scope.error();
    if (timeline != kTimeline || !num || !den) return scope.refuse("the aspect of an unknown timeline is asked for");
    *num = static_cast<csSDK_uint32>(scope->session.settings().compPixelAspect.num);
    *den = scope->session.settings().compPixelAspect.den;
    return PF_Err_NONE;
}

}  // namespace

std::span<const SuiteOffer> PremiereSuites() {
    static const auto kFormats = MakeTable<PF_PixelFormatSuite1>([](auto& table) {
        table.AddSupportedPixelFormat = AddPixelFormat;
        table.ClearSupportedPixelFormats = ClearPixelFormats;
        table.GetPixelFormat = PremiereFormat;
    });
    static const auto kUtility =
        MakeTable<PF_UtilitySuite>([](auto& table) { table.GetContainingTimelineID = ContainingTimeline; });
    static const PrSDKSequenceInfoSuite kSequence{FrameRect, SequenceAspect};
    static const SuiteOffer kOffers[] = {
        OfferOf(suites::kPixelFormat, false, true, kFormats),
        OfferOf(suites::kPremiereUtility, false, true, kUtility),
        OfferOf(suites::kSequenceInfo, false, true, kSequence),
    };
    return kOffers;
}

}  // namespace quillon::host
