#pragma once

#include "cli/effect/EffectSource.h"

namespace quillon::cli {

// What is wrong now with the shaders of the linked engine, which runs this effect, at places in the author's own files.
// Errors only. A shader whose text the script gave has no line; its place is fx.js.
Diagnostics ExplainShaderFaults(const EffectSource& source);

// All that is wrong with the shader files of an effect, whether or not its script loads them: by their texts, see
// CheckShaderText, and by this machine's driver, in the linked engine's GL context. The engine has started. Throws a
// Fault where there is no OpenGL.
Diagnostics CompileShaderFiles(const EffectSource& source);

}  // namespace quillon::cli
