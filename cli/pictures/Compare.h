#pragma once

#include <array>
#include <cstdint>

#include "cli/pictures/Picture.h"

namespace quillon::cli {

// How far two pictures of one size are apart, in units of the deeper one: 1/255, 1/65535 or 1/32768 of full scale, or
// floats.
struct Difference {
    SampleFormat format = SampleFormat::byte;
    std::array<double, 4> largest{};  // red, green, blue, alpha; infinite where only one is a number
    std::array<double, 4> mean{};
    std::uint64_t pixels = 0;           // of the picture
    std::uint64_t differentPixels = 0;  // in any channel
    std::uint64_t failedPixels = 0;     // with a channel that differs by more than the limit
};

// The pictures have one size.
Difference Compare(const Picture& a, const Picture& b, double limit);

// Opaque, black where the pictures are equal, and full scale where the largest difference is; 8 bits.
Picture DrawDifference(const Picture& a, const Picture& b);

}  // namespace quillon::cli
