#pragma once

#include "hostapi/HostApi.h"

namespace quillon {

enum class EventVerdict {
    ignored,  // not ours: the event stays as it is
    handled,  // ours by its place, with nothing to do
    wanted,   // for the color wheel
};

// Whether an event is for the effect: by its control's host index, which lies from the first COLOR up to the first
// POINT, and wants a wheel when it is listed. Without a POINT no index lies there.
EventVerdict JudgeEvent(const PF_EventExtra& extra);

}  // namespace quillon
