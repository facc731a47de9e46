#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/effect/ControlValues.h"
#include "cli/effect/Controls.h"

namespace quillon::cli {

// One control at several values, one after the other.
struct Sweep {
    const Control* control = nullptr;
    std::vector<std::pair<std::string, ControlValue>> values;  // as they were written, and what they mean
};

// NAME=a,b,c; with semicolons between values that hold commas themselves, as NAME=10,20;30,40. Throws WrongCommandLine.
// The controls live longer.
Sweep ParseSweep(const std::vector<Control>& controls, std::string_view text);

}  // namespace quillon::cli
