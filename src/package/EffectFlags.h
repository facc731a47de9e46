#pragma once

#include <cstdint>

namespace quillon {

// Out-flags that hosts are told of every effect, whatever its FLAGS say: bits 0 (keeps its resources open), 2 (varies
// without a control moving), 15 (draws controls of its own) and 26 (wants to hear when the panel is updated).
inline constexpr std::uint32_t kFixedOutFlags = 0x4008005;

}  // namespace quillon
