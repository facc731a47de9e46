#pragma once

#include <emmintrin.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

#include "imagelib/Pixels.h"

namespace quillon::ImageLib {

// One lane of a vector in all four.
template <int Lane>
inline __m128 Broadcast(__m128 v) {
    return _mm_shuffle_ps(v, v, _MM_SHUFFLE(Lane, Lane, Lane, Lane));
}

// Lane by lane.
inline __m128 Squared(__m128 v) {
    return v * v;
}

// Four pixels at a time: one vector for each lane, alpha first. Arithmetic on them is exactly that of single floats.
struct FourPixels {
    __m128 lane[4];

    // The four pixels at these floats each, A, R, G, B.
    static FourPixels Transposed(__m128 first, __m128 second, __m128 third, __m128 fourth) {
        _MM_TRANSPOSE4_PS(first, second, third, fourth);
        return {{first, second, third, fourth}};
    }

    // Colors become their luma, alpha stays. Alpha takes part with a weight of 0: what is not finite there spreads,
    // and what is surely finite and positive need not be looked at.
    template <bool FiniteAlpha>
    void toGrayscale() {
        __m128 first = _mm_set1_ps(0.2126f) * lane[1];
        if (!FiniteAlpha) first = _mm_set1_ps(0.0f) * lane[0] + first;
        const __m128 luma = first + (_mm_set1_ps(0.7152f) * lane[2] + _mm_set1_ps(0.0722f) * lane[3]);
        lane[1] = lane[2] = lane[3] = luma;
    }
};

// Calls work(0) to work(Count - 1), each number a constant, so that arrays of lanes stay in registers.
template <int Count, class Work>
inline void ForLanes(Work work) {
    [&]<int... Lane>(std::integer_sequence<int, Lane...>) {
        (work(std::integral_constant<int, Lane>{}), ...);
    }
    (std::make_integer_sequence<int, Count>{});
}

// How pixels of type T are read as floats, and how a color of a palette is put in their place. Memory need not be
// aligned. `Packed` is a palette's color in its memory form; `Put` leaves the pixel its own alpha, which goes
// through a float on its way at 8 and 16 bits. `PutTwoLevels` does so with four: white where the mask is set, else
// black.
template <class T>
struct PixelAccess;

template <>
struct PixelAccess<Pixel8> {
    // FloatFromChannel's two factors; the first is a power of two, so that their product rounds nothing.
    static constexpr float kByteScale = std::bit_cast<float>(0x3F808081u) / 256;
    using Packed = std::uint32_t;

    static std::uint32_t Word(const std::byte* pixel) {
        std::uint32_t word;
        std::memcpy(&word, pixel, sizeof word);
        return word;
    }
    static FourPixels Expand(__m128i words) {
        const __m128i byte = _mm_set1_epi32(255);
        const auto toFloat = [](__m128i v) { return _mm_cvtepi32_ps(v) * _mm_set1_ps(kByteScale); };
        return {{toFloat(_mm_and_si128(words, byte)), toFloat(_mm_and_si128(_mm_srli_epi32(words, 8), byte)),
                 toFloat(_mm_and_si128(_mm_srli_epi32(words, 16), byte)), toFloat(_mm_srli_epi32(words, 24))}};
    }
    static FourPixels Load(const std::byte* row) {
        return Expand(_mm_loadu_si128(reinterpret_cast<const __m128i*>(row)));
    }
    static FourPixels Gather(const std::byte* const pixels[4]) {
        return Expand(_mm_set_epi32(static_cast<int>(Word(pixels[3])), static_cast<int>(Word(pixels[2])),
                                    static_cast<int>(Word(pixels[1])), static_cast<int>(Word(pixels[0]))));
    }
    static Packed Pack(const Pixel32& color) {
        return static_cast<std::uint32_t>(Channel8FromFloat(color.red)) << 8 |
               static_cast<std::uint32_t>(Channel8FromFloat(color.green)) << 16 |
               static_cast<std::uint32_t>(Channel8FromFloat(color.blue)) << 24;
    }
    static void PutTwoLevels(std::byte* row, __m128 mask) {
        const __m128i alpha = _mm_set1_epi32(255);
        auto* words = reinterpret_cast<__m128i*>(row);
        const __m128i colors = _mm_andnot_si128(alpha, _mm_castps_si128(mask));
        _mm_storeu_si128(words, _mm_or_si128(_mm_and_si128(_mm_loadu_si128(words), alpha), colors));
    }
    static void Put(std::byte* pixel, Packed color) {
        const std::uint32_t word = (Word(pixel) & 255) | color;
        std::memcpy(pixel, &word, sizeof word);
    }
};

template <>
struct PixelAccess<Pixel15> {
    using Packed = std::uint64_t;

    static FourPixels Expand(__m128i pixels01, __m128i pixels23) {
        const __m128i even = _mm_unpacklo_epi16(pixels01, pixels23);
        const __m128i odd = _mm_unpackhi_epi16(pixels01, pixels23);
        const __m128i alphaRed = _mm_unpacklo_epi16(even, odd);
        const __m128i greenBlue = _mm_unpackhi_epi16(even, odd);
        const __m128i zero = _mm_setzero_si128();
        const auto toFloat = [](__m128i v) { return _mm_cvtepi32_ps(v) * _mm_set1_ps(1.0f / 32768); };
        return {{toFloat(_mm_unpacklo_epi16(alphaRed, zero)), toFloat(_mm_unpackhi_epi16(alphaRed, zero)),
                 toFloat(_mm_unpacklo_epi16(greenBlue, zero)), toFloat(_mm_unpackhi_epi16(greenBlue, zero))}};
    }
    static FourPixels Load(const std::byte* row) {
        const auto* pixels = reinterpret_cast<const __m128i*>(row);
        const __m128i inOrder01 = _mm_loadu_si128(pixels);
        const __m128i inOrder23 = _mm_loadu_si128(pixels + 1);
        return Expand(inOrder01, inOrder23);
    }
    static FourPixels Gather(const std::byte* const pixels[4]) {
        const auto one = [&](int i) { return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(pixels[i])); };
        return Expand(_mm_unpacklo_epi64(one(0), one(1)), _mm_unpacklo_epi64(one(2), one(3)));
    }
    static Packed Pack(const Pixel32& color) {
        return std::uint64_t{Channel15FromFloat(color.red)} << 16 |
               std::uint64_t{Channel15FromFloat(color.green)} << 32 |
               std::uint64_t{Channel15FromFloat(color.blue)} << 48;
    }
    static void PutTwoLevels(std::byte* row, __m128 mask) {
        const __m128i alpha = _mm_set1_epi64x(0xFFFF);
        const __m128i most = _mm_set1_epi16(32767);
        auto* pairs = reinterpret_cast<__m128i*>(row);
        const auto put = [&](__m128i* pair, __m128i white) {
            const __m128i pixels = _mm_loadu_si128(pair);
            const __m128i limited = _mm_sub_epi16(pixels, _mm_subs_epu16(pixels, most));
            const __m128i colors = _mm_andnot_si128(alpha, _mm_and_si128(white, most));
            _mm_storeu_si128(pair, _mm_or_si128(_mm_and_si128(limited, alpha), colors));
        };
        put(pairs, _mm_castps_si128(_mm_unpacklo_ps(mask, mask)));
        put(pairs + 1, _mm_castps_si128(_mm_unpackhi_ps(mask, mask)));
    }
    static void Put(std::byte* pixel, Packed color) {
        std::uint16_t alpha;
        std::memcpy(&alpha, pixel, sizeof alpha);
        const std::uint64_t word = (alpha < 32767 ? alpha : 32767) | color;
        std::memcpy(pixel, &word, sizeof word);
    }
};

template <>
struct PixelAccess<Pixel32> {
    using Packed = Pixel32;

    static FourPixels Gather(const std::byte* const pixels[4]) {
        const auto one = [&](int i) { return _mm_loadu_ps(reinterpret_cast<const float*>(pixels[i])); };
        return FourPixels::Transposed(one(0), one(1), one(2), one(3));
    }
    static FourPixels Load(const std::byte* row) {
        const std::byte* const pixels[4] = {row, row + 16, row + 32, row + 48};
        return Gather(pixels);
    }
    static Packed Pack(const Pixel32& color) { return color; }
    static void PutTwoLevels(std::byte* row, __m128 mask) {
        const __m128 alpha = _mm_castsi128_ps(_mm_setr_epi32(-1, 0, 0, 0));
        const __m128 white = _mm_setr_ps(0, 1, 1, 1);
        auto* floats = reinterpret_cast<float*>(row);
        ForLanes<4>([&](auto i) {
            const __m128 color = _mm_and_ps(_mm_shuffle_ps(mask, mask, decltype(i)::value * 0x55), white);
            _mm_storeu_ps(floats + i * 4, _mm_or_ps(_mm_and_ps(_mm_loadu_ps(floats + i * 4), alpha), color));
        });
    }
    static void Put(std::byte* pixel, const Packed& color) { std::memcpy(pixel + 4, &color.red, 12); }
};

}  // namespace quillon::ImageLib
