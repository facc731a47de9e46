#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <string>

#include "cli/import/EffectPlan.h"

namespace quillon::cli {

// Reads an input of an ISF header that becomes a control, which has its name: kind, value and range. What is carried
// over in another form goes to `warn`. Gives the GLSL type of its uniform; null for a type that is no control.
const char* ReadIsfControl(const std::string& type, const nlohmann::json& input, PlannedControl& control,
                           const std::function<void(const std::string& words)>& warn);

}  // namespace quillon::cli
