#pragma once

#include <cstddef>
#include <cstdint>

#include "hostapi/HostApi.h"
#include "shell/Suites.h"

namespace quillon {

// The pixels of a host's world: where they start, and their bits per channel. No pixels: null, and a depth of 0.
struct WorldPixels {
    std::byte* pixels = nullptr;
    std::uint32_t bitDepth = 0;
};

// As "PF Pixel Data Suite" says; the depth is that of the getter that answered.
WorldPixels PixelsOf(const SuiteHold<PF_PixelDataSuite1>& suite, PF_EffectWorld& world);
// The same; acquires and releases the suite. Throws the int 13 without one.
WorldPixels PixelsOf(PF_InData& in, PF_EffectWorld& world);

// Bits per channel of a world by its pixel format; 0 when the format is unknown or the host has no suite for it. Under
// After Effects the missing suite is reported to the user.
std::uint32_t worldDepth(PF_InData& in, PF_OutData& out, PF_EffectWorld& world);

// Bytes of a pixel of four channels.
constexpr std::size_t PixelBytes(std::uint32_t bitDepth) {
    return std::size_t{bitDepth} * 4 / 8;
}

// A size at a rational scale, rounded in a way that takes one off whole numbers, in unsigned integers: 0 wraps. Both
// are intended. A host's scale without a denominator counts as 1.
constexpr std::uint32_t ScaleBy(std::uint32_t value, const PF_RationalScale& scale) {
    const std::uint32_t denominator = scale.den;
    if (denominator == 0) return value;
    return (static_cast<std::uint32_t>(scale.num) * value - 1 + denominator / 2) / denominator;
}

}  // namespace quillon
