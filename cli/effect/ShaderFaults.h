#pragma once

#include "cli/effect/EffectSource.h"

namespace quillon::cli {

// What is wrong now with the shaders of the linked engine, which runs this effect, in the lines of the author's own
// files. There are no columns, see gpu/ShaderLog.h. A shader whose text the script gave has no line; its place is
// fx.js.
Diagnostics ExplainShaderFaults(const EffectSource& source);

}  // namespace quillon::cli
