#pragma once

#include <functional>
#include <map>
#include <memory>

#include "host/HostCallback.h"
#include "hostapi/HostApi.h"

namespace quillon::host {

class HostInstance;
class World;

// One call of a callback.
struct CallbackEvent {
    Callback callback;
    std::int64_t key;        // see Callback
    HostInstance* instance;  // null in a selector that concerns none
};

// What a test does in the middle of the host's work. Hooks run on the thread of the call while the host holds no lock,
// so an effect can be entered again from here. Set them while no selector runs.
struct Hooks {
    // At the start of a callback, before faults strike.
    std::map<Callback, std::function<void(const CallbackEvent&)>> at;

    // Around each selector: `before` may alter the records that the effect is about to get. What it puts in out is a
    // preset, as real hosts leave one. `after` sees what the effect left there.
    std::function<void(PF_Cmd, PF_InData&, PF_OutData&)> before;
    std::function<void(PF_Cmd, const PF_InData&, const PF_OutData&)> after;

    // Edits the copy of a control that checkout_param is about to give: values that move in time.
    std::function<void(HostInstance&, PF_ParamIndex, A_long time, A_u_long scale, PF_ParamDef&)> valueAt;

    // Makes the session's worlds: extents in pixels, bits a channel.
    std::function<std::shared_ptr<World>(A_long width, A_long height, int bitDepth)> makeWorld;

    // The effect's input at another time, for an effect that renders upstream; null: no frame. Without this hook the
    // frame's own input serves all times.
    std::function<std::shared_ptr<World>(HostInstance&, A_Time)> upstream;
};

}  // namespace quillon::host
