#pragma once

#include <cstdint>

#include "hostapi/HostApi.h"

namespace quillon {

// Uploads the world's pixels as the effect's input, or, for an index below that of the input, as a frame before it.
// `bitDepth` 0 uploads nothing that could be drawn. Needs the GL lock and a selected instance. Throws the int 13
// without "PF Pixel Data Suite" under After Effects.
void transferInput(PF_InData& in, PF_EffectWorld& world, std::uint32_t bitDepth, std::uint32_t index);

}  // namespace quillon
