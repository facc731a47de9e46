#pragma once

#include <cstdint>

namespace quillon {

// A counter of milliseconds from an arbitrary start, which wraps.
std::uint32_t TickMilliseconds();

}  // namespace quillon
