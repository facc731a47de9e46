#pragma once

#include <vector>

#include "cli/effect/ControlValues.h"
#include "cli/effect/Controls.h"
#include "host/HostInstance.h"

namespace quillon::cli {

// Sets a control of the instance. The host counts positions in pixels of the picture at 1/downsample of its size.
void SetControl(host::HostInstance& instance, const Control& control, const ControlValue& value,
                std::uint32_t downsample);

// Puts a 2D position at its default: a host keeps that as a share of the picture's extent, of which the effect has
// registered 16 bits in the upper half of a number that would be pixels in a live value.
void SetDefaultPosition(host::HostInstance& instance, const Control& control, std::uint32_t width,
                        std::uint32_t height);

}  // namespace quillon::cli
