#pragma once

#include <string>

#include "cli/import/EffectPlan.h"

namespace quillon::cli {

// What a shader file expects the host to fill in, and what the script hands over for it.
struct BuiltIn {
    const char* name;
    const char* type;   // of the uniform
    const char* value;  // JavaScript, within a function of one pass: width, height, index and the object frame
    bool needsFrames;   // counts frames: the script must know how fast they follow
};
// Null when the name is none.
const BuiltIn* FindBuiltIn(const std::string& name);

// The effect's fx.js: declares the controls and draws the passes. It holds only the functions that this plan needs.
std::string WriteScript(const EffectPlan& plan);

}  // namespace quillon::cli
