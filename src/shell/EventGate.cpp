#include "shell/EventGate.h"

#include <algorithm>

#include "parameter/Parameter.h"
#include "shell/ParameterMaps.h"

namespace quillon {

EventVerdict JudgeEvent(const PF_EventExtra& extra) {
    const ParameterMaps& maps = ParameterMaps::instance();
    const auto index = static_cast<std::uint32_t>(extra.effect_win.index);
    if (index < maps.firstIndexOfKind[COLOR] || index >= maps.firstIndexOfKind[POINT]) return EventVerdict::ignored;
    const auto& listed = maps.customUiIndices;
    return std::find(listed.begin(), listed.end(), index) == listed.end() ? EventVerdict::handled
                                                                          : EventVerdict::wanted;
}

}  // namespace quillon
