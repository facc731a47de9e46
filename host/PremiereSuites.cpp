// The suites that only Premiere Pro has.

#include "host/HostSession.h"
#include "host/HostTables.h"

namespace quillon::host {

namespace {

constexpr PrTimelineID kTimeline = 815;

PF_Err addPixelFormat(PF_ProgPtr effectRef, PrPixelFormat format) {
    const CallbackScope visit(effectRef, Callback::addPixelFormat, format);
    if (!visit) return visit.error();
    visit->session.record([&](Records& records) { records.pixelFormats.push_back(format); });
    return PF_Err_NONE;
}

PF_Err clearPixelFormats(PF_ProgPtr effectRef) {
    const CallbackScope visit(effectRef, Callback::clearPixelFormats);
    if (!visit) return visit.error();
    visit->session.record([&](Records& records) { records.pixelFormats.clear(); });
    return PF_Err_NONE;
}

PF_Err premiereFormat(PF_EffectWorld* world, PrPixelFormat* out) {
    const CallbackScope visit(Callback::premiereFormat);
    if (!visit) return visit.error();
    if (!world || !out) return visit.refuse("the format of no world is asked for");
    const int depth = World::depthOf(world->data);
    if (depth == 0) return PF_Err_BAD_CALLBACK_PARAM;
    *out = depth == 8    ? PrPixelFormat_ARGB_4444_8u
           : depth == 16 ? PrPixelFormat_ARGB_4444_16u
                         : PrPixelFormat_ARGB_4444_32f;
    return PF_Err_NONE;
}

PF_Err containingTimeline(PF_ProgPtr effectRef, PrTimelineID* out) {
    const CallbackScope visit(effectRef, Callback::containingTimeline);
    if (!visit) return visit.error();
    if (!out) return visit.refuse("the timeline is asked for into nowhere");
    *out = kTimeline;
    return PF_Err_NONE;
}

prSuiteError frameRect(PrTimelineID timeline, prRect* out) {
    const CallbackScope visit(Callback::frameRect);
    if (!visit) return visit.error();
    if (timeline != kTimeline || !out) return visit.refuse("the frame of an unknown timeline is asked for");
    // Not at 0, so that a size read from one edge alone is seen.
    constexpr csSDK_int32 kLeft = 7, kTop = 5;
    const HostSettings& settings = visit->session.settings();
    out->left = kLeft;
    out->top = kTop;
    out->right = kLeft + settings.compWidth;
    out->bottom = kTop + settings.compHeight;
    return PF_Err_NONE;
}

prSuiteError sequenceAspect(PrTimelineID timeline, csSDK_uint32* num, csSDK_uint32* den) {
    const CallbackScope visit(Callback::sequenceAspect);
    if (!visit) return visit.error();
    if (timeline != kTimeline || !num || !den) return visit.refuse("the aspect of an unknown timeline is asked for");
    *num = static_cast<csSDK_uint32>(visit->session.settings().compPixelAspect.num);
    *den = visit->session.settings().compPixelAspect.den;
    return PF_Err_NONE;
}

}  // namespace

std::span<const SuiteOffer> premiereSuites() {
    static const auto formats = makeTable<PF_PixelFormatSuite1>([](auto& table) {
        table.AddSupportedPixelFormat = addPixelFormat;
        table.ClearSupportedPixelFormats = clearPixelFormats;
        table.GetPixelFormat = premiereFormat;
    });
    static const auto utility =
        makeTable<PF_UtilitySuite>([](auto& table) { table.GetContainingTimelineID = containingTimeline; });
    static const PrSDKSequenceInfoSuite sequence{frameRect, sequenceAspect};
    static const SuiteOffer offers[] = {
        offerOf(suites::kPixelFormat, false, true, formats),
        offerOf(suites::kPremiereUtility, false, true, utility),
        offerOf(suites::kSequenceInfo, false, true, sequence),
    };
    return offers;
}

}  // namespace quillon::host
