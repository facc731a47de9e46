#pragma once

#include <memory>

#include "cli/diagnostics/Diagnostic.h"
#include "cli/effect/EffectSource.h"

namespace quillon::cli {

// Watches an effect's script while the linked engine runs it, and finds calls that quietly do nothing, controls that
// hosts would bend, and what piles up. Script errors are not among its findings. The script runs in the same way with
// it, with each call of the API a little slower. One at a time; on the thread that runs the script.
class ScriptWatch {
public:
    // Before the LoadedEffect, whose source it is. The source outlives it.
    explicit ScriptWatch(const EffectSource& source);
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
