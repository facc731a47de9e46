#pragma once

#include <vector>

#include "cli/effect/ControlValues.h"

namespace quillon::cli {

// The values at which a control is tried: of a number its minimum and maximum, of a popup each entry, of a position the
// corners of the test frame, of a color black, white and one between. Empty for a control without a value.
std::vector<ControlValue> EndsOf(const Control& control);

// "'amount' at 100": a control with one of its values.
std::string WordsOfValue(const Control& control, const ControlValue& value);

}  // namespace quillon::cli
