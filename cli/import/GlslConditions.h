#pragma once

#include "cli/glsl/GlslTokens.h"

namespace quillon::cli {

// Settles the preprocessor's questions whose answer is known, those after GL_ES and __VERSION__: their lines go, and so
// does what the answer leaves out. Takes out #version lines, precision statements and words too. Line ends stay.
void SettleVersions(GlslTokens& tokens);

}  // namespace quillon::cli
