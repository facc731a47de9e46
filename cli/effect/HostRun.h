#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/HostSession.h"

namespace quillon::cli {

// A frame as it came out of the effect.
struct HostFrame {
    host::FrameResult result;
    bool isInput = false;  // the effect rendered no frame and handed its input on
};

// One effect in a host, with instances of it: what happens to an artist's effect from its start to its frames.
// What a host would not go on after is thrown as std::runtime_error.
class HostRun {
public:
    HostRun(host::EffectModule effect, const host::HostSettings& settings);
    HostRun(const HostRun&) = delete;
    HostRun& operator=(const HostRun&) = delete;

    // The effect's start, and the list of its controls.
    void start() { session.start(); }
    const std::vector<PF_ParamDef>& parameters() const { return session.parameters(); }

    // The effect on one more layer, and the panel of its controls shown. That instance is the chosen one then.
    void apply();
    void select(std::size_t number) { applied = instances[number]; }  // in the order of their making
    host::HostInstance& instance() { return *applied; }
    const host::HostInstance& instance() const { return *applied; }
    // After its values have changed.
    void updatePanel();
    HostFrame render(const host::FrameRequest& request);

    // How an instance's control gets its value for a moment, in seconds, that the effect asks for.
    using SetValue = std::function<void(host::HostInstance&, PF_ParamIndex, double seconds)>;
    void setValuesBy(SetValue set);

    // What the effect did that no effect may do.
    std::vector<std::string> violations() const { return session.violations(); }

private:
    host::HostSession session;
    std::vector<host::HostInstance*> instances;
    host::HostInstance* applied = nullptr;
    bool hasCopied = false;
};

}  // namespace quillon::cli
