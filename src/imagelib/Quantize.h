#pragma once

#include <cstdint>

namespace quillon {

class Surface;

// Reduces a surface's colors in place; its alpha stays, but comes back at most 32767 at 16 bits.
//
//   mode     1: black and white. 2 to 7: a palette of 8, 16, 32, 64, 128, 256 colors made from the picture.
//            9 to 21: a fixed palette.
//   dither   1: none. 3 to 11: error diffusion. 13 to 15: ordered.
//   value    at mode 1 the threshold; with ordered dithering of other modes its amplitude.
//   grayscale    first brings each pixel to its luma; mode 1 always does.
//   serpentine   error diffusion runs every other row from right to left.
//
// With any other mode or dither the picture is only converted to floats and back, and to gray where asked.
// Nothing at all happens at depths other than 8, 16 and 32, and to a surface that holds fewer bytes than its extent
// names. A surface with an extent but without pixels ends the process.
void SurfaceQuantize(Surface& surface, std::int32_t mode, std::int32_t dither, float value, bool grayscale,
                     bool serpentine);

}  // namespace quillon
