#include "imagelib/UnitWords.h"

#include <emmintrin.h>

#include <cstring>

namespace quillon {

namespace {

// Four channels to a 32-bit number each, rounded as the processor does: to the nearest, halves to even. The order of
// the operands matters: a maximum with NaN is the second one.
__m128i NumbersFromUnits(__m128 units) {
    const __m128 cut = _mm_min_ps(_mm_max_ps(units, _mm_setzero_ps()), _mm_set1_ps(1));
    return _mm_cvtps_epi32(_mm_mul_ps(cut, _mm_set1_ps(65535)));
}

// Eight numbers as words. The processor packs signed words only, so the range is shifted there and back.
__m128i Packed(__m128i first, __m128i second) {
    const __m128i middle = _mm_set1_epi32(32768);
    const __m128i words = _mm_packs_epi32(_mm_sub_epi32(first, middle), _mm_sub_epi32(second, middle));
    return _mm_xor_si128(words, _mm_set1_epi16(static_cast<short>(0x8000)));
}

}  // namespace

std::uint16_t WordFromUnit(float value) {
    return static_cast<std::uint16_t>(_mm_cvtsi128_si32(NumbersFromUnits(_mm_set_ss(value))));
}

void WordsFromUnits(std::byte* channelBytes, std::size_t channels) {
    std::size_t done = 0;
    for (; channels - done >= 8; done += 8) {
        const auto* units = reinterpret_cast<const float*>(channelBytes + done * sizeof(float));
        const __m128i words = Packed(NumbersFromUnits(_mm_loadu_ps(units)), NumbersFromUnits(_mm_loadu_ps(units + 4)));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(channelBytes + done * sizeof(std::uint16_t)), words);
    }
    for (; done < channels; ++done) {
        float unit;
        std::memcpy(&unit, channelBytes + done * sizeof unit, sizeof unit);
        const std::uint16_t word = WordFromUnit(unit);
        std::memcpy(channelBytes + done * sizeof word, &word, sizeof word);
    }
}

}  // namespace quillon
