#pragma once

#include <cstdint>
#include <string_view>

#include "cli/effect/Controls.h"
#include "host/HostInstance.h"
#include "parameter/Parameter.h"

namespace quillon::cli {

// What a control is set to, by its kind.
struct ControlValue {
    float numbers[4] = {};     // number, degrees, position in pixels of the full-size picture, or red to alpha
    std::int32_t integer = 0;  // switch: 0 or 1; popup: the entry, from 1
};

// The value that a text means for a control, by its kind; the forms are those that `quillon render --help` lists.
// Throws WrongCommandLine for any other text, and for a kind that has no value.
ControlValue ParseControlValue(const Parameter& control, std::string_view text);

// Sets a control of the instance; one that has no value stays. The host counts positions in pixels of the picture at
// 1/downsample of its size.
void SetControl(host::HostInstance& instance, const Control& control, const ControlValue& value,
                std::uint32_t downsample);

}  // namespace quillon::cli
