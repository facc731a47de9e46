#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "parameter/Parameter.h"

namespace quillon::cli {

// What a control is set to, by its kind.
struct ControlValue {
    float numbers[4] = {};     // number, degrees, position in pixels of the full-size picture, or red to alpha
    std::int32_t integer = 0;  // switch: 0 or 1; popup: the entry, from 1
};

// A control that the host shows.
struct Control {
    std::int32_t index;  // in the host's list, from 1
    Parameter declared;  // by the effect
};

// The controls among the effect's declarations: hidden ones, and those of no kind, are not in the host's list.
std::vector<Control> ControlsOf(const std::vector<Parameter>& declarations);

// The control of this uniform name or, failing that, this label. Throws WrongCommandLine, with all names that exist,
// for an unknown name and for a label that several controls have.
const Control& FindControl(const std::vector<Control>& controls, std::string_view name);

// The value that a text means for a control, by its kind; the forms are those that `quillon render --help` lists.
// Throws WrongCommandLine for any other text, and for a kind that has no value.
ControlValue ParseControlValue(const Parameter& control, std::string_view text);

}  // namespace quillon::cli
