#pragma once

#include <array>
#include <cstdint>

#include "frei0r/Listing.h"
#include "parameter/Parameter.h"

namespace quillon::frei0r {

// A parameter's value as the host has it: one number, two of a position, three of a color.
using HostValue = std::array<double, 3>;

struct FrameSize {
    std::uint32_t width = 0;
    std::uint32_t height = 0;

    std::size_t pixels() const { return std::size_t{width} * height; }
};

// How the parameters of this role travel, and the control of an effect that they are, or are a part of.
ParamType TypeOf(Role role);
HostControl HostControlOf(Role role);

// Reads or writes the host's record of a parameter of this type.
HostValue LoadHostValue(ParamType type, const void* record);
void StoreHostValue(ParamType type, const HostValue& value, void* record);

// Gives the engine's parameter the value that the script declared, in the units of a frame of this size: a color from
// 0 to 1 where the declaration counts to 255, a point in pixels where it is a share of the frame.
void SetDeclaredValue(Parameter& parameter, const ListedControl& control, FrameSize frame);

// Puts what the host has set into the engine's parameter, of which a control may be a part. A number outside of 0 to 1,
// which hosts do not send on purpose, counts as the nearest one within.
void SetHostValue(Parameter& parameter, const ListedControl& control, const HostValue& value, FrameSize frame);

// The host's value for what the engine's parameter holds.
HostValue HostValueOf(const Parameter& parameter, const ListedControl& control, FrameSize frame);

}  // namespace quillon::frei0r
