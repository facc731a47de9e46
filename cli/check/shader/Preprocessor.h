#pragma once

#include <vector>

#include "cli/check/shader/ShaderSource.h"

namespace quillon::cli {

// Says of each token whether the preprocessor keeps it, as far as that is known before a driver has its word: what the
// text itself and the engine define is known, and that a desktop driver has no GL_ES; other names that begin with GL_
// are the driver's. False when something stays unknown, and when a macro holds a bracket without its partner.
bool Preprocess(std::vector<SourceToken>& tokens);

}  // namespace quillon::cli
