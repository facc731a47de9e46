#pragma once

#include <type_traits>
#include <vector>

#include "imagelib/OrderedMatrices.h"
#include "imagelib/Picture.h"
#include "imagelib/Quantizers.h"

namespace quillon::ImageLib {

// Reduces each pixel by itself. With a matrix, its cell times the amplitude is first added to all lanes.
template <class T, class Chooser>
void ReduceSinglePixels(const Picture<T>& picture, Chooser& chooser, PackedColors<T> colors,
                        const OrderedMatrix* matrix, float amplitude) {
    float offsets[OrderedMatrix::kMaxSize] = {};
    for (std::uint32_t y = 0; y < picture.height; ++y) {
        if (matrix)
            for (std::uint32_t x = 0; x < OrderedMatrix::kMaxSize; ++x) offsets[x] = matrix->cell(x, y) * amplitude;
        picture.forFours(y, [&](std::byte* pixels, std::uint32_t x, std::uint32_t) {
            FourPixels four = picture.load(pixels);
            if (matrix) {
                const __m128 offset = _mm_loadu_ps(offsets + (x & 4));
                ForLanes<4>([&](auto lane) { four.lane[lane] = offset + four.lane[lane]; });
            }
            if constexpr (std::is_same_v<Chooser, TwoLevels>) {
                PixelAccess<T>::PutTwoLevels(pixels, chooser.above(four));
            } else {
                std::uint32_t entries[4];
                chooser.number(four, entries);
                ForLanes<4>([&](auto i) { PixelAccess<T>::Put(pixels + i * sizeof(T), colors[entries[i]]); });
            }
        });
    }
}

// The same without a matrix, for bytes: pictures repeat their colors, so answers are kept by the whole pixel.
template <class Chooser>
void ReduceRepeatedPixels(const Picture<Pixel8>& picture, Chooser& chooser, PackedColors<Pixel8> colors) {
    struct Answer {
        std::uint32_t pixel;
        std::uint32_t color;
    };
    const auto search = [&](std::uint32_t pixel) {
        const __m128i word = _mm_cvtsi32_si128(static_cast<int>(pixel));
        float argb[16];
        Chooser::Unpack(picture.expand(word), argb);
        __m128 color = _mm_loadu_ps(argb);
        return colors[chooser.choose(color)];
    };
    const int bits = std::uint64_t{picture.width} * picture.height >= 500000 ? 15 : 11;
    std::vector<Answer> kept(std::size_t{1} << bits, Answer{0, search(0)});
    for (std::uint32_t y = 0; y < picture.height; ++y) {
        std::byte* pixel = picture.row(y);
        for (std::uint32_t x = 0; x < picture.width; ++x, pixel += sizeof(Pixel8)) {
            const std::uint32_t word = PixelAccess<Pixel8>::Word(pixel);
            Answer& answer = kept[(word * 0x9E3779B1u) >> (32 - bits)];
            if (answer.pixel != word) answer = {word, search(word)};
            PixelAccess<Pixel8>::Put(pixel, answer.color);
        }
    }
}

}  // namespace quillon::ImageLib
