#include "shell/CompInfo.h"

#include "shell/HostVersion.h"

namespace quillon {

namespace {

void QueryComposition(PF_InData& in, SuiteCache& cache, SequenceData& block) {
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
        block.compWidth = static_cast<std::uint32_t>(width);
        block.compHeight = static_cast<std::uint32_t>(height);
    }
    A_Ratio aspect{};
    if (items.AEGP_GetItemPixelAspectRatio(item, &aspect) == A_Err_NONE)
        block.compAspect = static_cast<float>(aspect.num) / static_cast<float>(aspect.den);
}

void QueryTimeline(PF_InData& in, SequenceData& block) {
    const SuiteHold utility(in.pica_basicP, suites::kPremiereUtility);
    const SuiteHold info(in.pica_basicP, suites::kSequenceInfo);
    PrTimelineID timeline = 0;
    if (!utility || !info || utility->GetContainingTimelineID(in.effect_ref, &timeline) != PF_Err_NONE) return;

    csSDK_uint32 numerator = 0;
    csSDK_uint32 denominator = 0;
    if (info->GetPixelAspectRatio(timeline, &numerator, &denominator) == 0)
        block.compAspect = static_cast<float>(numerator) / static_cast<float>(denominator);
    prRect frame{};
    if (info->GetFrameRect(timeline, &frame) == 0) {
        block.compWidth = static_cast<std::uint32_t>(frame.right) - static_cast<std::uint32_t>(frame.left);
        block.compHeight = static_cast<std::uint32_t>(frame.bottom) - static_cast<std::uint32_t>(frame.top);
    }
}

}  // namespace

void queryCompInfo(PF_InData& in, SuiteCache& cache, SequenceData& block) {
    if (IsPremiere(in))
        QueryTimeline(in, block);
    else
        QueryComposition(in, cache, block);
}

}  // namespace quillon
