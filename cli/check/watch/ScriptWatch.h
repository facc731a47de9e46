#pragma once

#include <functional>
#include <memory>

#include "cli/diagnostics/Diagnostic.h"
#include "cli/effect/EffectSource.h"

namespace quillon::cli {

// Watches an effect's script while the linked engine runs it, and finds calls that quietly do nothing, controls that
// hosts would bend, and what piles up. Script errors are not among its findings. The script runs in the same way with
// it, with each call of the API a little slower. One at a time; on the thread that runs the script.
class ScriptWatch {
public:
    // What would be found if a pass that begins now never ended; nothing once the driver is done with it. On the thread
    // that runs the script. It must not throw.
    using PassListener = std::function<void(const Diagnostics&)>;

    // Before the LoadedEffect, whose source it is. The source outlives it. With `onPass` each pass is waited for.
    explicit ScriptWatch(const EffectSource& source, PassListener onPass = {});
    // After the effect's last frame.
    ~ScriptWatch();
    ScriptWatch(const ScriptWatch&) = delete;
    ScriptWatch& operator=(const ScriptWatch&) = delete;

    // What was found since the last call, at most once a rule and line.
    Diagnostics take();

private:
    class Watcher;
    std::unique_ptr<Watcher> watcher;
};

}  // namespace quillon::cli
