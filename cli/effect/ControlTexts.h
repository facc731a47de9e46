#pragma once

#include <nlohmann/json.hpp>

#include "cli/effect/Controls.h"
#include "hostapi/HostApi.h"

namespace quillon::cli {

// A control with every field that its host has got, in a fixed order. "uniform" and "label" are the script's side of
// it: the host knows neither the one nor more than 31 bytes of the other.
nlohmann::ordered_json DescribeControl(const Control& control, const PF_ParamDef& def);

}  // namespace quillon::cli
