#include "imagelib/NearestColor.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

namespace quillon::ImageLib {

namespace {

// No rounding carries a color out of a level where it is inside this part of it.
constexpr float kSurely = 0.999f;

__m128 Magnitude(__m128 v) {
    return _mm_andnot_ps(_mm_set1_ps(-0.0f), v);
}

__m128 Smallest(__m128 v) {
    v = _mm_min_ps(v, _mm_shuffle_ps(v, v, _MM_SHUFFLE(1, 0, 3, 2)));
    return _mm_min_ps(v, _mm_shuffle_ps(v, v, _MM_SHUFFLE(2, 3, 0, 1)));
}

std::size_t FirstEqual(__m128 four, __m128 value) {
    return static_cast<std::size_t>(
        std::countr_zero(static_cast<unsigned>(_mm_movemask_ps(_mm_cmpeq_ps(four, value)))));
}

}  // namespace

NearestColor::NearestColor(std::span<const Pixel32> palette, std::uint64_t pixels, Range expected)
    : middle((expected.low + expected.high) / 2),
      reach((expected.high - expected.low) / 2 * 1.01f),
      memory(std::min(pixels * 8 + 32768, kMostMemory)) {
    // Of equal entries only the first can win.
    using Bits = std::array<std::uint32_t, 4>;
    std::vector<std::uint8_t> entries;
    for (std::size_t i = 0; i < palette.size(); ++i) {
        const auto same = [&](const Pixel32& p) { return std::bit_cast<Bits>(p) == std::bit_cast<Bits>(palette[i]); };
        if (std::none_of(palette.begin(), palette.begin() + static_cast<std::ptrdiff_t>(i), same))
            entries.push_back(static_cast<std::uint8_t>(i));
    }
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i % 4 == 0) addEmptyBlock();
        entriesOf.back()[i % 4] = entries[i];
        const float* channels = &palette[entries[i]].alpha;
        for (int lane = 0; lane < 4; ++lane) blocks.back().lane[lane][i % 4] = channels[lane];
    }
    everything = ListOf(0, blocks.size());
    nearBits = pixels >= 500000 ? 6 : pixels >= 30000 ? 5 : 4;
    near.resize(std::size_t{1} << 3 * nearBits);
    coarse.resize(std::size_t{1} << 3 * (nearBits - 2));
    memory -= (near.size() + coarse.size()) * sizeof(Cell);
}

void NearestColor::addEmptyBlock() {
    blocks.push_back({{_mm_set1_ps(kFar), _mm_set1_ps(kFar), _mm_set1_ps(kFar), _mm_set1_ps(kFar)}});
    entriesOf.push_back({});
}

// The distances of a color to the four entries of a block.
struct NearestColor::Distances {
    explicit Distances(__m128 argb)
        : a(Broadcast<0>(argb)), r(Broadcast<1>(argb)), g(Broadcast<2>(argb)), b(Broadcast<3>(argb)) {}
    template <int Pixel>
    Distances(const FourPixels& colors, std::integral_constant<int, Pixel>)
        : a(Broadcast<Pixel>(colors.lane[0])),
          r(Broadcast<Pixel>(colors.lane[1])),
          g(Broadcast<Pixel>(colors.lane[2])),
          b(Broadcast<Pixel>(colors.lane[3])) {}
    __m128 operator()(const Block& to) const {
        return (Squared(a - to.lane[0]) + Squared(r - to.lane[1])) +
               (Squared(g - to.lane[2]) + Squared(b - to.lane[3]));
    }
    __m128 a, r, g, b;
};

// For colors inside the cells only: all distances are finite and below the limit.
std::uint32_t NearestColor::scan(Cell list, __m128 argb) const {
    const Distances distances(argb);
    const Block* block = &blocks[FirstBlockOf(list)];
    const auto* entries = &entriesOf[FirstBlockOf(list)];
    const std::uint32_t count = list & 255;
    __m128 all[64];
    __m128 best = all[0] = distances(block[0]);
    for (std::uint32_t i = 1; i < count; ++i) best = _mm_min_ps(best, all[i] = distances(block[i]));
    best = Smallest(best);
    std::uint32_t i = 0;
    int equal = 0;
    while ((equal = _mm_movemask_ps(_mm_cmpeq_ps(all[i], best))) == 0) ++i;
    return entries[i][static_cast<std::size_t>(std::countr_zero(static_cast<unsigned>(equal)))];
}

std::uint32_t NearestColor::scanEverything(__m128 argb) const {
    const Distances distances(argb);
    alignas(16) float all[4];
    float best = 1000000.0f;
    std::uint32_t entry = 0;
    for (std::uint32_t i = 0; i < (everything & 255); ++i) {
        const __m128 four = distances(blocks[i]);
        if (_mm_movemask_ps(_mm_cmplt_ps(four, _mm_set1_ps(best))) == 0) continue;
        _mm_store_ps(all, four);
        for (std::uint32_t k = 0; k < 4; ++k)
            if (all[k] < best) {
                best = all[k];
                entry = entriesOf[i][k];
            }
    }
    return entry;
}

std::uint32_t NearestColor::resolve(Cell cell, __m128 argb) const {
    return cell & kSingle ? cell & 255 : scan(cell, argb);
}

void NearestColor::find(const FourPixels& colors, std::uint32_t entries[4]) {
    const __m128 r = colors.lane[1] - _mm_set1_ps(middle);
    const __m128 g = colors.lane[2] - _mm_set1_ps(middle);
    const __m128 b = colors.lane[3] - _mm_set1_ps(middle);
    const __m128 nearReach = _mm_set1_ps(reach * kSurely);
    const __m128 alphaNear = _mm_cmple_ps(Magnitude(colors.lane[0] - _mm_set1_ps(1.0f)), _mm_set1_ps(kAlphaReach));
    const __m128 inside =
        _mm_and_ps(_mm_and_ps(_mm_cmplt_ps(Magnitude(r), nearReach), _mm_cmplt_ps(Magnitude(g), nearReach)),
                   _mm_and_ps(_mm_cmplt_ps(Magnitude(b), nearReach), alphaNear));
    std::uint32_t cells[4] = {};
    if (_mm_movemask_ps(inside) == 15) {
        const __m128 scale = _mm_set1_ps(static_cast<float>(1 << nearBits) / (2 * reach));
        const auto axis = [&](__m128 v) { return _mm_cvttps_epi32((v + _mm_set1_ps(reach)) * scale); };
        const __m128i index = _mm_or_si128(
            _mm_or_si128(_mm_slli_epi32(axis(r), 2 * nearBits), _mm_slli_epi32(axis(g), nearBits)), axis(b));
        alignas(16) std::uint32_t indices[4];
        _mm_store_si128(reinterpret_cast<__m128i*>(indices), index);
        ForLanes<4>([&](auto i) { cells[i] = near[indices[i]]; });
        const Cell all = cells[0] & cells[1] & cells[2] & cells[3];
        if (all & kSingle) {
            ForLanes<4>([&](auto i) { entries[i] = cells[i] & 255; });
            return;
        }
        if (all & kShort) {
            // No branch decides which of the four are single: the processor would predict it wrong too often.
            ForLanes<4>([&](auto i) {
                const std::size_t block = FirstBlockOf(cells[i]);
                const __m128 four = Distances(colors, i)(blocks[block]);
                const Cell entry = entriesOf[block][FirstEqual(four, Smallest(four))];
                entries[i] = cells[i] & kSingle ? cells[i] & 255 : entry;
            });
            return;
        }
    }
    const FourPixels single = FourPixels::Transposed(colors.lane[0], colors.lane[1], colors.lane[2], colors.lane[3]);
    ForLanes<4>([&](auto i) { entries[i] = cells[i] != 0 ? resolve(cells[i], single.lane[i]) : find(single.lane[i]); });
}

std::uint32_t NearestColor::find(__m128 argb) {
    const __m128 away = Magnitude(argb - _mm_setr_ps(1.0f, middle, middle, middle));
    alignas(16) float distance[4];
    _mm_store_ps(distance, away);
    if (!(distance[0] <= kAlphaReach)) return scanEverything(argb);
    const float sure = reach * kSurely;
    const __m128 nearReach = _mm_setr_ps(4.0f, sure, sure, sure);
    if (_mm_movemask_ps(_mm_cmplt_ps(away, nearReach)) != 15) {
        if (_mm_movemask_ps(_mm_cmplt_ps(away, _mm_set1_ps(reach * (1 << (kLevels - 1)) * kSurely))) != 15)
            return scanEverything(argb);
        return resolve(cellOfFar(argb, std::max({distance[1], distance[2], distance[3]})), argb);
    }
    const __m128 scale = _mm_set1_ps(static_cast<float>(1 << nearBits) / (2 * reach));
    alignas(16) std::int32_t at[4];
    _mm_store_si128(reinterpret_cast<__m128i*>(at),
                    _mm_cvttps_epi32(((argb - _mm_set1_ps(middle)) + _mm_set1_ps(reach)) * scale));
    const auto index = static_cast<std::uint32_t>((at[1] << nearBits | at[2]) << nearBits | at[3]);
    Cell cell = near[index];
    if (cell == 0) cell = cellOfNear(index);
    return resolve(cell, argb);
}

}  // namespace quillon::ImageLib
