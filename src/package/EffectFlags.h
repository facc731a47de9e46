#pragma once

#include <cstdint>

namespace quillon {

// Out-flags that every effect reports to its host, whatever its FLAGS say: bits 0 (keeps its resources open), 2 (varies
// without a control moving), 15 (draws custom controls) and 26 (wants to hear when the panel is updated).
inline constexpr std::uint32_t kFixedOutFlags = 0x4008005;

// What FLAGS and FLAGS2 should be, so that hosts use all that the engine can do: a dialog for the about text and 16
// bits per channel; the smart route and 32 bits.
inline constexpr std::uint32_t kEngineOutFlags = 0x2000020;
inline constexpr std::uint32_t kEngineOutFlags2 = 0x1400;

}  // namespace quillon
