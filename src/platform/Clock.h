#pragma once

#include <chrono>
#include <cstdint>

namespace quillon {

// Milliseconds since an arbitrary moment; wraps after 49 days.
inline std::uint32_t TickMilliseconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

}  // namespace quillon
