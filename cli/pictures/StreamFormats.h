#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "cli/pictures/Picture.h"

namespace quillon::cli {

// Uncompressed video as other programs read it from a pipe. Pictures are in a host's form.

// Red, green and blue from 0 to 1, which shows where a picture is transparent.
struct Background {
    float red = 0, green = 0, blue = 0;
};

// The picture over a background: opaque, in the same form.
void PlaceOver(Picture& picture, const Background& background);

// Rows of red, green, blue and alpha, tight, without a header: a byte each for 8 bits, else a little-endian word.
std::vector<std::byte> RgbaFrame(const Picture& picture);

// The header of a stream of YUV4MPEG2, and one of its frames: the picture over the background in Y'CbCr of BT.709,
// limited range, in full resolution; 8 bits for 8, else 16.
std::string Y4mHeader(std::uint32_t width, std::uint32_t height, std::uint32_t bitDepth, std::int64_t rateNumerator,
                      std::int64_t rateDenominator);
std::vector<std::byte> Y4mFrame(const Picture& picture, const Background& background);

}  // namespace quillon::cli
