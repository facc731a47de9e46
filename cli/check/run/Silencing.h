#pragma once

#include "cli/effect/EffectSource.h"

namespace quillon::cli {

// Leaves out the warnings that the author has silenced by a comment with "quillon-ignore RULE, ...": in the warning's
// line or the line before it; of a warning without a line anywhere in fx.js. Errors stay. Adds a warning for each name
// in such a comment that no rule has.
Diagnostics Silence(const EffectSource& source, Diagnostics findings);

}  // namespace quillon::cli
