#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "parameter/Parameter.h"

namespace quillon::cli {

// The 16 bytes of a control as the engine takes them.
using ControlBytes = std::array<std::byte, 16>;

// A control that the host shows, as the effect declared it.
struct Control {
    std::uint32_t index;  // of the declaration
    Parameter declared;
};

// The control of this uniform name or, failing that, this label. Throws WrongCommandLine, with all names that exist,
// for an unknown name and for a label that several controls have.
const Control& FindControl(const std::vector<Control>& controls, std::string_view name);

// The value that a text means for a control, by its kind; the forms are those that `quillon render --help` lists.
// Throws WrongCommandLine for any other text, and for a kind that has no value.
ControlBytes ParseControlValue(const Parameter& control, std::string_view text);

// What a host sends for a control that nobody touched. It keeps defaults in its own units: colours as bytes and
// positions as shares of the input's extent, of which the effect declares the 16-bit fraction. Nothing for a kind
// that the host sends no value of.
std::optional<ControlBytes> HostDefault(const Parameter& control, std::uint32_t inputWidth, std::uint32_t inputHeight);

}  // namespace quillon::cli
