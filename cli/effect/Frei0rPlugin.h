#pragma once

#include "cli/effect/EffectSource.h"
#include "frei0r/Listing.h"

namespace quillon::cli {

struct Frei0rPlugin {
    frei0r::Listing listing;
    Diagnostics warnings;  // what of the effect no frei0r host can use
};

// What frei0r hosts learn of the effect, which has passed CheckSource, without starting it. Runs its setup() for the
// controls, so one a process. Throws ToolError when that fails, as LoadedEffect does.
Frei0rPlugin DescribePlugin(const EffectSource& source);

}  // namespace quillon::cli
