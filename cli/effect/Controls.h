#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "parameter/Parameter.h"

namespace quillon::cli {

// A control that the host shows.
struct Control {
    std::int32_t index;  // in the host's list, from 1
    Parameter declared;  // by the effect
};

// The controls among the effect's declarations: hidden ones, and those of an unknown kind, are not in the host's list.
std::vector<Control> ControlsOf(const std::vector<Parameter>& declarations);

// The control of this uniform name or, failing that, this label. Throws WrongCommandLine, with all names that exist,
// for an unknown name and for a label that several controls have.
const Control& FindControl(const std::vector<Control>& controls, std::string_view name);

}  // namespace quillon::cli
