#pragma once

#include "hostapi/HostApi.h"

namespace quillon::host {

// An event over a control of the Effect Controls panel, with the context that the host draws it in. Alter what else it
// is to say in `extra`, and hand that to HostSession::event().
struct HostEvent {
    HostEvent(PF_EventType type, PF_ParamIndex index) {
        context.w_type = PF_Window_EFFECT;
        extra.contextH = &contextPlace;
        extra.e_type = type;
        extra.effect_win.index = index;
        extra.effect_win.area = PF_EA_CONTROL;
    }
    HostEvent(const HostEvent&) = delete;
    HostEvent& operator=(const HostEvent&) = delete;

    PF_Context context{};
    PF_Context* contextPlace = &context;
    PF_EventExtra extra{};
};

}  // namespace quillon::host
