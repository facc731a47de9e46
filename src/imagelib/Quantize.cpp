#include "imagelib/Quantize.h"

#include "imagelib/Reduction.h"
#include "imagelib/Surface.h"
#include "platform/FailFast.h"

namespace quillon {

namespace {

// Whether the rows are inside the surface's bytes: an alias may have a larger extent than it has bytes for.
bool HoldsItsExtent(const Surface& surface, std::uint64_t rowBytes, std::uint64_t usedRowBytes) {
    const std::uint64_t held = surface.byteSize();
    if (usedRowBytes > held) return false;
    return surface.height == 1 || rowBytes <= (held - usedRowBytes) / (surface.height - 1);
}

template <class T>
void QuantizeAs(Surface& surface, const ImageLib::ReductionSettings& settings) {
    std::byte* pixels = surface.pixelAddress();
    if (!pixels) FailFast("a surface without pixels was quantized");
    ImageLib::Surface<T> view(reinterpret_cast<T*>(pixels), surface.width, surface.height, surface.rowBytes);
    if (HoldsItsExtent(surface, view.rowBytes, std::uint64_t{surface.width} * sizeof(T)))
        ImageLib::Reduce(view, settings);
}

}  // namespace

void SurfaceQuantize(Surface& surface, std::int32_t mode, std::int32_t dither, float value, bool grayscale,
                     bool serpentine) {
    if (surface.width == 0 || surface.height == 0) return;
    const ImageLib::ReductionSettings settings{mode, std::int64_t{dither} - 1, value, grayscale || mode == 1,
                                               serpentine};
    switch (surface.bitDepth) {
        case 8:
            return QuantizeAs<ImageLib::Pixel8>(surface, settings);
        case 16:
            return QuantizeAs<ImageLib::Pixel15>(surface, settings);
        case 32:
            return QuantizeAs<ImageLib::Pixel32>(surface, settings);
    }
}

}  // namespace quillon
