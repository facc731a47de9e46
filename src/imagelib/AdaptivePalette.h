#pragma once

#include <type_traits>
#include <vector>

#include "imagelib/OctreePalette.h"
#include "imagelib/Picture.h"

namespace quillon::ImageLib {

// The palette that an octree makes of a picture, of `size` slots, 8 to 256; those that it leaves unfilled are all zero.
template <class T>
std::vector<Pixel32> AdaptivePalette(const Picture<T>& picture, std::uint32_t size) {
    OctreePalette octree;
    for (std::uint32_t y = 0; y < picture.height; ++y) {
        picture.forFours(y, [&](const std::byte* pixels, std::uint32_t, std::uint32_t count) {
            alignas(16) std::int32_t bytes[3][4];
            if constexpr (std::is_same_v<T, Pixel8>) {
                if (!picture.toGray) {  // bytes come back from floats as they were
                    for (std::uint32_t i = 0; i < count; ++i) {
                        const std::uint32_t word = PixelAccess<Pixel8>::Word(pixels + i * sizeof(T));
                        octree.add(static_cast<std::uint8_t>(word >> 8), static_cast<std::uint8_t>(word >> 16),
                                   static_cast<std::uint8_t>(word >> 24));
                    }
                    return;
                }
            }
            const FourPixels four = picture.load(pixels);
            for (int channel = 0; channel < 3; ++channel) {
                // As Channel8FromFloat: NaN is not the larger of two and gives 0.
                const __m128 scaled = _mm_max_ps(four.lane[channel + 1] * _mm_set1_ps(255.0f), _mm_setzero_ps());
                _mm_store_si128(reinterpret_cast<__m128i*>(bytes[channel]),
                                _mm_cvtps_epi32(_mm_min_ps(scaled, _mm_set1_ps(255.0f))));
            }
            for (std::uint32_t i = 0; i < count; ++i)
                octree.add(static_cast<std::uint8_t>(bytes[0][i]), static_cast<std::uint8_t>(bytes[1][i]),
                           static_cast<std::uint8_t>(bytes[2][i]));
        });
    }
    std::vector<Pixel32> palette(size);
    octree.reduceTo(palette);
    return palette;
}

}  // namespace quillon::ImageLib
