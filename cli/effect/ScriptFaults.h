#pragma once

#include "cli/effect/EffectSource.h"

namespace quillon {
struct ScriptError;
}

namespace quillon::cli {

// The line in fx.js of a line that the heap has counted, prelude included; 0 when it is not in the
// author's file.
int AuthorLine(int preparedLine, const EffectSource& source);

// A script error as its author can use it: the entry point in which it came up, and the line in fx.js where that is
// known.
Diagnostic ExplainScriptError(const ScriptError& error, const EffectSource& source);

// Keeps all script errors of the process from the first call on. Where the contract wants a host's process to end, this
// process prints the script's line and the reason, removes its temporary files and ends with the status of a fault. The
// source outlives the engine's last script.
void CollectScriptErrors(const EffectSource& source);

// Where the fault that ends the process goes, in place of standard error; null, as at first, for that. Called once, on
// the thread that runs the script, and the process ends after it.
using LastFaultListener = void (*)(const Diagnostic&);
void ListenToLastFault(LastFaultListener listener);

// What has come up since the last call. An error that no memory was left to keep is a MemoryShortage.
Diagnostics TakeScriptFaults(const EffectSource& source);

}  // namespace quillon::cli
