#include "cli/effect/HostRun.h"

#include <fmt/format.h>

#include <stdexcept>
#include <utility>

namespace quillon::cli {

HostRun::HostRun(host::EffectModule effect, const host::HostSettings& settings) : session(effect, settings) {
    // The effect copies pixels through the host only when there is no frame to write.
    session.hooks().at[host::Callback::copy] = [this](const host::CallbackEvent&) { hasCopied = true; };
}

void HostRun::apply() {
    applied = &session.apply();
    instances.push_back(applied);
}

void HostRun::updatePanel() {
    if (const PF_Err error = session.updateParamsUI(*applied).error)
        throw std::runtime_error(fmt::format("UPDATE_PARAMS_UI answered {}", error));
}

HostFrame HostRun::render(const host::FrameRequest& request) {
    hasCopied = false;
    HostFrame frame;
    frame.result = session.renderFrame(*applied, request);
    frame.isInput = hasCopied;
    return frame;
}

void HostRun::setValuesBy(SetValue set) {
    session.hooks().valueAt = [set = std::move(set)](host::HostInstance& instance, PF_ParamIndex index, A_long time,
                                                     A_u_long scale, PF_ParamDef& def) {
        if (!instance.hasParam(index) || scale == 0) return;
        set(instance, index, static_cast<double>(time) / scale);
        def = instance.param(index);
    };
}

}  // namespace quillon::cli
