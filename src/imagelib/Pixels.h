#pragma once

#include <cstdint>

namespace quillon::ImageLib {

// Pixels of 8, 16 and 32 bits a channel, in the host's order: alpha first in memory, then red, green, blue. "Lane"
// numbers count from alpha.
struct Pixel8 {
    using Channel = std::uint8_t;
    static constexpr std::uint32_t kBitDepth = 8;
    Channel alpha, red, green, blue;  // 0 to 255
};
struct Pixel15 {
    using Channel = std::uint16_t;
    static constexpr std::uint32_t kBitDepth = 16;
    Channel alpha, red, green, blue;  // 0 to 32768
};
struct Pixel32 {
    using Channel = float;
    static constexpr std::uint32_t kBitDepth = 32;
    Channel alpha, red, green, blue;  // nominally 0 to 1, not clamped
};

static_assert(sizeof(Pixel8) == 4 && sizeof(Pixel15) == 8 && sizeof(Pixel32) == 16);

// Channel values as floats, and back. All of the library uses these and no others.
float FloatFromChannel(std::uint8_t value);     // 255 gives 1.0
float FloatFromChannel(std::uint16_t value);    // 32768 gives 1.0
std::uint8_t Channel8FromFloat(float value);    // rounded, ties to even, saturated to 0 to 255; NaN gives 0
std::uint16_t Channel15FromFloat(float value);  // truncated, saturated as a signed word: 1.0 gives 32767; NaN gives 0

}  // namespace quillon::ImageLib
