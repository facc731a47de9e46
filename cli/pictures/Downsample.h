#pragma once

#include "cli/pictures/Picture.h"

namespace quillon::cli {

// The picture at 1/n of its size, sides rounded up: each pixel is the mean of the n by n pixels in its place, as
// far as they are in the picture, with colors weighed by their alpha.
Picture Downsample(const Picture& picture, std::uint32_t n);

}  // namespace quillon::cli
