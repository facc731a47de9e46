#include "shell/CompInfo.h"

#include "shell/HostVersion.h"

namespace quillon {

namespace {

void QueryComposition(PF_InData& in, SuiteCache& cache, CompInfo& info) {
    const auto& interface = cache.get(suites::kAegpInterface);
    const auto& layers = cache.get(suites::kAegpLayer);
    const auto& comps = cache.get(suites::kAegpComp);
    const auto& items = cache.get(suites::kAegpItem);

    AEGP_LayerH layer = nullptr;
    AEGP_CompH comp = nullptr;
    AEGP_ItemH item = nullptr;
    if (interface.AEGP_GetEffectLayer(in.effect_ref, &layer) != A_Err_NONE || !layer) return;
    if (layers.AEGP_GetLayerParentComp(layer, &comp) != A_Err_NONE || !comp) return;
    if (comps.AEGP_GetItemFromComp(comp, &item) != A_Err_NONE || !item) return;

    A_long width = 0;
    A_long height = 0;
    if (items.AEGP_GetItemDimensions(item, &width, &height) == A_Err_NONE) {
        info.width = static_cast<std::uint32_t>(width);
        info.height = static_cast<std::uint32_t>(height);
    }
    A_Ratio aspect{};
    if (items.AEGP_GetItemPixelAspectRatio(item, &aspect) == A_Err_NONE)
        info.pixelAspect = static_cast<float>(aspect.num) / static_cast<float>(aspect.den);
}

void QueryTimeline(PF_InData& in, CompInfo& info) {
    const SuiteHold utility(in.pica_basicP, suites::kPremiereUtility);
    const SuiteHold sequence(in.pica_basicP, suites::kSequenceInfo);
    PrTimelineID timeline = 0;
    if (!utility || !sequence || utility->GetContainingTimelineID(in.effect_ref, &timeline) != PF_Err_NONE) return;

    csSDK_uint32 numerator = 0;
    csSDK_uint32 denominator = 0;
    if (sequence->GetPixelAspectRatio(timeline, &numerator, &denominator) == 0)
        info.pixelAspect = static_cast<float>(numerator) / static_cast<float>(denominator);
    prRect frame{};
    if (sequence->GetFrameRect(timeline, &frame) == 0) {
        info.width = static_cast<std::uint32_t>(frame.right) - static_cast<std::uint32_t>(frame.left);
        info.height = static_cast<std::uint32_t>(frame.bottom) - static_cast<std::uint32_t>(frame.top);
    }
}

}  // namespace

void queryCompInfo(PF_InData& in, SuiteCache& cache, CompInfo& info) {
    if (IsPremiere(in))
        QueryTimeline(in, info);
    else
        QueryComposition(in, cache, info);
}

}  // namespace quillon
