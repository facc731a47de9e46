#pragma once

#include <cstdint>

#include "imagelib/Pixels.h"
#include "imagelib/TypedSurface.h"

namespace quillon::ImageLib {

// What a surface is reduced to and how, as SurfaceQuantize takes it; `ditherIndex` is its dither less 1.
struct ReductionSettings {
    std::int32_t mode;
    std::int64_t ditherIndex;
    float value;
    bool grayscale;
    bool serpentine;
};

// In place, at each depth. Rows need not be aligned. Memory beside the surface: under 16 bytes a pixel and 64 KiB, and
// for adaptive palettes the octree.
void Reduce(Surface<Pixel8>& surface, const ReductionSettings& settings);
void Reduce(Surface<Pixel15>& surface, const ReductionSettings& settings);
void Reduce(Surface<Pixel32>& surface, const ReductionSettings& settings);

}  // namespace quillon::ImageLib
