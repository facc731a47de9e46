#include "imagelib/Pixels.h"

#include <bit>
#include <cmath>

namespace quillon::ImageLib {

namespace {

// 256 / 255 to the last place of a float: brings v / 256, which is exact, to v / 255.
constexpr float kByteScale = std::bit_cast<float>(0x3F808081u);

}  // namespace

float FloatFromChannel(std::uint8_t value) {
    return (static_cast<float>(value) / 256.0f) * kByteScale;
}

float FloatFromChannel(std::uint16_t value) {
    return static_cast<float>(value) / 32768.0f;
}

std::uint8_t Channel8FromFloat(float value) {
    const float scaled = value * 255.0f;
    if (!(scaled > 0.0f)) return 0;
    if (scaled >= 255.0f) return 255;
    return static_cast<std::uint8_t>(std::nearbyint(scaled));
}

std::uint16_t Channel15FromFloat(float value) {
    const float scaled = value * 32768.0f;
    if (std::isnan(scaled)) return 0;
    if (scaled >= 32767.0f) return 32767;
    if (scaled <= -32768.0f) return 0x8000;
    return static_cast<std::uint16_t>(static_cast<std::int16_t>(scaled));
}

}  // namespace quillon::ImageLib
