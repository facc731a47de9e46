#include "imagelib/ShortPalette.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace quillon::ImageLib {

namespace {

// A distance that is not below it never wins.
constexpr float kLimit = 1000000.0f;

}  // namespace

bool ShortPalette::Holds(std::span<const Pixel32> palette) {
    const auto isSolid = [](const Pixel32& entry) { return entry.alpha == 1.0f; };
    return palette.size() <= kMost && std::all_of(palette.begin(), palette.end(), isSolid);
}

// Places after the last entry are filled with colors that no color is near to.
ShortPalette::ShortPalette(std::span<const Pixel32> palette)
    : half((palette.size() + 1) / 2), isLong(palette.size() > kMost / 2) {
    constexpr float kFar = std::numeric_limits<float>::infinity();
    for (std::size_t i = 0; i < kMost; ++i) {
        const Pixel32 entry = i < palette.size() ? palette[i] : Pixel32{1, kFar, kFar, kFar};
        entries[i] = {_mm_set1_ps(entry.red), _mm_set1_ps(entry.green), _mm_set1_ps(entry.blue),
                      _mm_set1_epi32(static_cast<int>(i))};
        blocks[i / 4].red[i % 4] = entry.red;
        blocks[i / 4].green[i % 4] = entry.green;
        blocks[i / 4].blue[i % 4] = entry.blue;
    }
}

// The best so far for each of four colors. NaN is below nothing, and the minimum then is its second operand.
struct ShortPalette::Best {
    __m128 distance = _mm_set1_ps(kLimit);
    __m128i number = _mm_setzero_si128();

    void take(__m128 candidate, __m128i candidateNumber) {
        const __m128i better = _mm_castps_si128(_mm_cmplt_ps(candidate, distance));
        distance = _mm_min_ps(candidate, distance);
        number = _mm_or_si128(_mm_and_si128(better, candidateNumber), _mm_andnot_si128(better, number));
    }
};

void ShortPalette::find(const FourPixels& colors, std::uint32_t found[4]) const {
    const __m128 r = colors.lane[1], g = colors.lane[2], b = colors.lane[3];
    const __m128 alpha = Squared(colors.lane[0] - _mm_set1_ps(1.0f));
    const auto distance = [&](const Entry& entry) {
        return (alpha + Squared(r - entry.red)) + (Squared(g - entry.green) + Squared(b - entry.blue));
    };
    // Two halves side by side wait less for each other's results. The second wins only where it is strictly nearer.
    Best first, second;
    for (std::size_t i = 0; i < half; ++i) {
        first.take(distance(entries[i]), entries[i].number);
        second.take(distance(entries[half + i]), entries[half + i].number);
    }
    first.take(second.distance, second.number);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(found), first.number);
}

std::uint32_t ShortPalette::find(__m128 argb) const {
    const __m128 r = Broadcast<1>(argb), g = Broadcast<2>(argb), b = Broadcast<3>(argb);
    const __m128 alpha = Squared(Broadcast<0>(argb) - _mm_set1_ps(1.0f));
    __m128 distances[kMost / 4];
    __m128 best = _mm_set1_ps(kLimit);
    const auto measureSixteen = [&](std::size_t first) {
        for (std::size_t k = first; k < first + 4; ++k)
            distances[k] =
                (alpha + Squared(r - blocks[k].red)) + (Squared(g - blocks[k].green) + Squared(b - blocks[k].blue));
        const __m128 low = _mm_min_ps(distances[first], best);
        const __m128 high = _mm_min_ps(distances[first + 2], best);
        best = _mm_min_ps(_mm_min_ps(distances[first + 1], low), _mm_min_ps(distances[first + 3], high));
    };
    measureSixteen(0);
    if (isLong) measureSixteen(4);
    best = _mm_min_ps(best, _mm_shuffle_ps(best, best, _MM_SHUFFLE(1, 0, 3, 2)));
    best = _mm_min_ps(best, _mm_shuffle_ps(best, best, _MM_SHUFFLE(2, 3, 0, 1)));
    if (!(_mm_cvtss_f32(best) < kLimit)) return 0;
    const auto bestOfSixteen = [&](std::size_t first) {
        const auto isBest = [&](std::size_t k) { return _mm_castps_si128(_mm_cmpeq_ps(distances[first + k], best)); };
        return static_cast<std::uint32_t>(_mm_movemask_epi8(
            _mm_packs_epi16(_mm_packs_epi32(isBest(0), isBest(1)), _mm_packs_epi32(isBest(2), isBest(3)))));
    };
    std::uint32_t equal = bestOfSixteen(0);
    if (isLong) equal |= bestOfSixteen(4) << 16;
    return static_cast<std::uint32_t>(std::countr_zero(equal));
}

}  // namespace quillon::ImageLib
