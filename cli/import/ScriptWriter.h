#pragma once

#include <string>

#include "cli/import/EffectPlan.h"

namespace quillon::cli {

// The effect's fx.js: declares the controls and draws the passes. It holds only the functions that this plan needs.
std::string WriteScript(const EffectPlan& plan);

}  // namespace quillon::cli
