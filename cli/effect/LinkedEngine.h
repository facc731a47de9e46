#pragma once

#include <chrono>
#include <vector>

#include "cli/effect/EffectSource.h"
#include "host/EffectModule.h"
#include "parameter/Parameter.h"

namespace quillon::cli {

// The engine that is linked into the tool, with its shell around it. A module reports nothing; this one can be
// asked. Given a module's handle it runs that module's package, and shares nothing with the engine inside of it.
namespace LinkedEngine {

// As a host would load it, with the package of `module`.
host::EffectModule WithPackageOf(const host::EffectModule& module);

// Keeps what goes wrong in the script, from now on, see CollectScriptErrors, and gives scripts a console, see
// ScriptNotes.h.
void Listen(const EffectSource& source);
// The script errors since the last call, and what is wrong with the shaders now. Throws std::bad_alloc when memory was
// refused where the engine goes on without a file or a picture.
Diagnostics TakeFaults(const EffectSource& source);

// How long each entry point of the script may run from now on; zero for ever, as at first. One that runs longer is
// ended and is a fault. Loops inside the script's own functions count, not those inside of one built-in function.
void LimitScripts(std::chrono::milliseconds limit);

// All declarations of the script, hidden ones too.
std::vector<Parameter> Declarations();
// The flags that config.xml declares to the host.
std::uint32_t Flags();
std::uint32_t Flags2();

// Throws a Fault when there is no OpenGL for us.
void RequireOpenGL();
// Pixels that a picture may have in either direction.
std::uint32_t LargestExtent();
// From now on its passes fill no pixels, so that a frame costs little more than its script.
void DrawNothing();

}  // namespace LinkedEngine

}  // namespace quillon::cli
