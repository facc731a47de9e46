#pragma once

#include <nlohmann/json.hpp>

#include "cli/effect/Controls.h"
#include "hostapi/HostApi.h"

namespace quillon::cli {

// A control with every field that its host has, in a fixed order. "uniform" and "label" come from the script: the host
// does not know the name of the uniform, and only 31 bytes of the label.
nlohmann::ordered_json DescribeControl(const Control& control, const PF_ParamDef& def);

}  // namespace quillon::cli
