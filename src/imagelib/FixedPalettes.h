#pragma once

#include <cstdint>
#include <vector>

#include "imagelib/Pixels.h"

namespace quillon::ImageLib {

// The palette of mode 9 to 21: 4, 8 or 16 colors, alpha 1; empty for any other mode. Some hold a color twice.
std::vector<Pixel32> FixedPalette(std::int32_t mode);

}  // namespace quillon::ImageLib
