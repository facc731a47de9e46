#include "imagelib/HostRange.h"

#include <cstring>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define QUILLON_HOST_RANGE_SSE2
#endif

namespace quillon {

namespace {

constexpr std::size_t kChannelBytes = sizeof(std::uint16_t);

template <std::uint16_t (*Rule)(std::uint16_t)>
void ConvertPlainly(const std::byte* source, std::byte* destination, std::size_t channels) {
    for (std::size_t i = 0; i < channels; ++i) {
        std::uint16_t value;
        std::memcpy(&value, source + i * kChannelBytes, kChannelBytes);
        value = Rule(value);
        std::memcpy(destination + i * kChannelBytes, &value, kChannelBytes);
    }
}

#ifdef QUILLON_HOST_RANGE_SSE2

constexpr std::size_t kVectorChannels = sizeof(__m128i) / kChannelBytes;

// 1 in each word that is above the limit, else 0. The processor compares signed words only; a saturated difference
// is 0 exactly where an unsigned word is not above.
__m128i OneIfAbove(__m128i values, __m128i limit) {
    const __m128i notAbove = _mm_cmpeq_epi16(_mm_subs_epu16(values, limit), _mm_setzero_si128());
    return _mm_add_epi16(notAbove, _mm_set1_epi16(1));
}

__m128i WidenVector(__m128i values) {
    const __m128i excess = OneIfAbove(values, _mm_set1_epi16(16384));
    return _mm_slli_epi16(_mm_sub_epi16(values, excess), 1);
}

__m128i FoldVector(__m128i values) {
    const __m128i excess = OneIfAbove(values, _mm_set1_epi16(static_cast<short>(0x8000)));
    return _mm_add_epi16(_mm_srli_epi16(values, 1), excess);
}

template <__m128i (*VectorRule)(__m128i), std::uint16_t (*Rule)(std::uint16_t)>
void Convert(const std::byte* source, std::byte* destination, std::size_t channels) {
    std::size_t done = 0;
    for (; channels - done >= kVectorChannels; done += kVectorChannels) {
        const auto* from = reinterpret_cast<const __m128i*>(source + done * kChannelBytes);
        auto* to = reinterpret_cast<__m128i*>(destination + done * kChannelBytes);
        _mm_storeu_si128(to, VectorRule(_mm_loadu_si128(from)));
    }
    ConvertPlainly<Rule>(source + done * kChannelBytes, destination + done * kChannelBytes, channels - done);
}

#endif

}  // namespace

void WidenHostRow(const std::byte* source, std::byte* destination, std::size_t channels) {
#ifdef QUILLON_HOST_RANGE_SSE2
    Convert<WidenVector, WidenHostChannel>(source, destination, channels);
#else
    ConvertPlainly<WidenHostChannel>(source, destination, channels);
#endif
}

void FoldToHostRow(const std::byte* source, std::byte* destination, std::size_t channels) {
#ifdef QUILLON_HOST_RANGE_SSE2
    Convert<FoldVector, FoldToHostChannel>(source, destination, channels);
#else
    ConvertPlainly<FoldToHostChannel>(source, destination, channels);
#endif
}

}  // namespace quillon
