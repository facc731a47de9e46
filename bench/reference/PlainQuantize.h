#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "imagelib/Pixels.h"

namespace quillon::reference {

// The color reduction in its plainest form: one temporary of float pixels, one pixel after the other, every palette
// entry tried. Tests compare the library with it byte for byte, and the bench measures both. Slow, with separate
// tables.
struct PlainQuantize {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t bitDepth = 0;  // 8, 16 or 32
    std::int32_t mode = 0;
    std::int32_t dither = 0;
    float value = 0;
    bool grayscale = false;
    bool serpentine = false;

    // Changes the pixels in place, rows tight.
    void run(std::byte* pixels) const;
};

// The adaptive palette of `colors` slots, 8 to 256, for pixels in memory order.
std::vector<ImageLib::Pixel32> PlainAdaptivePalette(std::span<const ImageLib::Pixel32> image, std::uint32_t colors);

}  // namespace quillon::reference
