#pragma once

#include <algorithm>
#include <cstring>
#include <span>
#include <type_traits>

#include "imagelib/FourPixels.h"
#include "imagelib/TypedSurface.h"

namespace quillon::ImageLib {

// A surface on its way through a reduction: its pixels as floats, gray where that is asked for, four at a time.
// Memory need not be aligned.
template <class T>
class Picture {
public:
    using Access = PixelAccess<T>;

    // A view: the surface outlives it. With `grayscale` every color comes as its gray, of equal red, green and blue.
    Picture(const Surface<T>& surface, bool grayscale)
        : width(surface.width), height(surface.height), toGray(grayscale), view(surface) {}

    // The first pixel of a row, from the top; no bound is checked.
    std::byte* row(std::uint32_t y) const { return reinterpret_cast<std::byte*>(view.row(y)); }

    // Four pixels as floats: those next to each other from `pixels` on, or those at four places.
    FourPixels load(const std::byte* pixels) const { return grayed(Access::Load(pixels)); }
    FourPixels gather(const std::byte* const pixels[4]) const { return grayed(Access::Gather(pixels)); }
    // Pixels of 8 bits in a vector.
    FourPixels expand(__m128i words) const { return grayed(Access::Expand(words)); }

    // Calls `work(pixels, x, count)` for a row, four pixels at a time. The last ones of a row whose width is no
    // multiple of four come as a copy of four, which is brought back afterwards; `count` of them are real.
    template <class Work>
    void forFours(std::uint32_t y, Work work) const {
        std::byte* pixels = row(y);
        std::byte rest[4 * sizeof(T)] = {};
        const std::size_t end = width;
        for (std::size_t x = 0; x < end; x += 4, pixels += 4 * sizeof(T)) {
            const std::size_t count = std::min<std::size_t>(4, end - x);
            if (count < 4) std::memcpy(rest, pixels, count * sizeof(T));
            // A single call, so that it is inlined.
            work(count < 4 ? rest : pixels, static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(count));
            if (count < 4) std::memcpy(pixels, rest, count * sizeof(T));
        }
    }

    const std::uint32_t width;
    const std::uint32_t height;
    const bool toGray;

private:
    FourPixels grayed(FourPixels pixels) const {
        if (toGray) pixels.toGrayscale<!std::is_same_v<T, Pixel32>>();
        return pixels;
    }

    const Surface<T>& view;
};

// A palette's entries in the form of pixels of type T.
template <class T>
using PackedColors = std::span<const typename PixelAccess<T>::Packed>;

}  // namespace quillon::ImageLib
