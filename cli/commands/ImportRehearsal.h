#pragma once

#include "cli/effect/EffectSource.h"
#include "cli/import/Import.h"

namespace quillon::cli {

// Starts an imported effect, and tries its vertex stage out. Adds to the effect's findings what that shows. What the
// engine finds wrong, at places in the author's files; empty when the effect works. Throws a Fault where there is no
// OpenGL.
Diagnostics RehearseImport(const EffectSource& source, ImportedEffect& effect);

}  // namespace quillon::cli
