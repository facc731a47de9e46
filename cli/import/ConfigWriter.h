#pragma once

#include <string>

#include "cli/import/EffectPlan.h"

namespace quillon::cli {

// The lines of config.xml by which hosts list an effect of this name and projects find it again.
std::string WriteIdentity(const std::string& name);

// The name as far as hosts have room for it.
std::string CutEffectName(const std::string& name);

// Whether a name has what a match name is made of.
bool HasPlainName(const std::string& name);

// The effect's config.xml. Texts are cut to what hosts have room for.
std::string WriteConfig(const EffectPlan& plan);

}  // namespace quillon::cli
