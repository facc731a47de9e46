#pragma once

#include "hostapi/HostApi.h"

namespace quillon {

// What becomes of a host's event.
enum class EventVerdict {
    ignored,  // for somebody else: the event stays as it is
    handled,  // for the effect, with nothing to do
    wanted,   // for the color wheel
};

// Whether an event is for the effect. The host index of its control must be at least that of the first COLOR and below
// that of the first POINT; without a POINT no index is. A listed control wants the wheel.
EventVerdict JudgeEvent(const PF_EventExtra& extra);

}  // namespace quillon
