#pragma once

#include <string>

#include "cli/import/EffectPlan.h"

namespace quillon::cli {

// The effect's config.xml. Texts are cut to what hosts have room for.
std::string WriteConfig(const EffectPlan& plan);

}  // namespace quillon::cli
