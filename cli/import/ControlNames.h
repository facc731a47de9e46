#pragma once

#include <set>
#include <string>

#include "cli/import/EffectPlan.h"

namespace quillon::cli {

// Labels as hosts take them: at most 31 bytes, no two the same after the cut.
class ControlLabels {
public:
    std::string take(const std::string& wish);

private:
    std::set<std::string> taken;
};

// Letters, digits and underscores, no digit first, and not a name that begins with "gl_".
bool IsGlslName(const std::string& name);

// Words that GLSL 1.10 keeps for itself and other versions do not, such as "input".
bool IsReservedWord(const std::string& name);
// Words of the language itself, in any version: no shader can have such an input.
bool IsGlslKeyword(const std::string& name);

// Puts least and most in order, apart from each other, and around the value.
void FitRange(double& least, double& most, double value);

// Decimals that tell about a thousand steps of the range apart.
int DecimalsFor(double least, double most);

}  // namespace quillon::cli
