#pragma once

#include <string>

#include "cli/effect/EffectSource.h"

namespace quillon::cli {

// The engine's text of all shaders' errors, line by line, with the lines of the author's own files. The compiler
// counts lines that stand in front of an author's text; its columns are those of a text with renamed words, and are
// left out. A shader whose text the script gave has no line.
Diagnostics ExplainShaderErrors(const std::string& errors, const EffectSource& source);

}  // namespace quillon::cli
