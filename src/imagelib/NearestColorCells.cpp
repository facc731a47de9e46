// How the lists of the cells of a palette search are made.

#include <algorithm>
#include <bit>
#include <cmath>

#include "imagelib/NearestColor.h"

namespace quillon::ImageLib {

namespace {

// A cell is taken a little larger than it is: finding a color's cell rounds too.
constexpr float kCellMargin = 1.02f;
// Two distances of the same color that differ by more than this part of the largest one cannot change places by
// rounding. The roundings in each distance and in the test itself add up to less than a fifth of it.
constexpr float kRounding = 1e-5f;
constexpr int kFarBits = 5;

float Square(float v) {
    return v * v;
}

}  // namespace

// Takes memory from what is left; false when that is not enough.
bool NearestColor::afford(std::uint64_t bytes) {
    if (bytes > memory) return false;
    memory -= bytes;
    return true;
}

// A list of the entries at these places of another list.
NearestColor::Cell NearestColor::makeList(Cell from, std::span<const std::uint8_t> places) {
    const std::size_t source = FirstBlockOf(from);
    if (places.size() == 1) return kSingle | kShort | entriesOf[source + places[0] / 4][places[0] % 4];
    const std::size_t count = (places.size() + 3) / 4;
    if (count == (from & 255) || !afford(count * 2 * (sizeof(Block) + 4))) return from;
    const std::size_t first = blocks.size();
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (i % 4 == 0) addEmptyBlock();
        const std::size_t block = source + places[i] / 4;
        for (int lane = 0; lane < 4; ++lane) blocks.back().lane[lane][i % 4] = blocks[block].lane[lane][places[i] % 4];
        entriesOf.back()[i % 4] = entriesOf[block][places[i] % 4];
    }
    return ListOf(first, count);
}

// In a cell with the middle m, the difference of an entry's squared distance to that of another is linear: it is
// smallest in the corner toward the entry, half the cell's size away on each axis.
NearestColor::Cell NearestColor::makeCell(Cell from, const Box& box) {
    if (from & kSingle) return from;
    const std::size_t count = from & 255;
    const Block* list = &blocks[FirstBlockOf(from)];

    const __m128 at[4] = {_mm_set1_ps(1.0f), _mm_set1_ps(box.middle[0]), _mm_set1_ps(box.middle[1]),
                          _mm_set1_ps(box.middle[2])};
    alignas(16) float distances[256];
    for (std::size_t i = 0; i < count; ++i) {
        __m128 sum = _mm_setzero_ps();
        for (int lane = 0; lane < 4; ++lane) {
            const __m128 d = at[lane] - list[i].lane[lane];
            sum = sum + d * d;
        }
        _mm_store_ps(distances + i * 4, sum);
    }
    const std::size_t nearest =
        static_cast<std::size_t>(std::min_element(distances, distances + count * 4) - distances);

    const float halfSize = box.halfSize * kCellMargin;
    float largest = Square(kAlphaReach + 1);
    for (const float m : box.middle) largest += Square(std::abs(m - 0.5f) + 0.5f + halfSize);
    const __m128 limit = _mm_set1_ps(distances[nearest] + largest * kRounding);
    std::uint8_t kept[256];
    std::size_t keptCount = 0;
    for (std::size_t i = 0; i < count; ++i) {
        __m128 gain = _mm_setzero_ps();
        for (int lane = 0; lane < 4; ++lane) {
            const __m128 apart = list[i].lane[lane] - _mm_set1_ps(list[nearest / 4].lane[lane][nearest % 4]);
            const float half = lane == 0 ? kAlphaReach : halfSize;
            gain = gain + _mm_andnot_ps(_mm_set1_ps(-0.0f), apart) * _mm_set1_ps(2 * half);
        }
        const __m128 atBest = _mm_load_ps(distances + i * 4) - gain;
        const int mayWin = _mm_movemask_ps(_mm_cmple_ps(atBest, limit));
        for (std::size_t k = 0; k < 4; ++k)
            if (mayWin >> k & 1) kept[keptCount++] = static_cast<std::uint8_t>(i * 4 + k);
    }
    return makeList(from, {kept, keptCount});
}

NearestColor::Cell NearestColor::cellOfNear(std::uint32_t index) {
    const auto boxOf = [this](std::uint32_t cell, int bits) {
        const float size = 2 * reach / static_cast<float>(1 << bits);
        Box box{{}, size / 2};
        for (int axis = 0; axis < 3; ++axis) {
            const std::uint32_t at = cell >> bits * (2 - axis) & ((1u << bits) - 1);
            box.middle[axis] = middle - reach + (static_cast<float>(at) + 0.5f) * size;
        }
        return box;
    };
    std::uint32_t coarseIndex = 0;
    for (int axis = 2; axis >= 0; --axis)
        coarseIndex = coarseIndex << (nearBits - 2) | (index >> nearBits * axis & ((1u << nearBits) - 1)) >> 2;
    Cell& parent = coarse[coarseIndex];
    if (parent == 0) parent = makeCell(everything, boxOf(coarseIndex, nearBits - 2));
    return near[index] = makeCell(parent, boxOf(index, nearBits));
}

NearestColor::Cell NearestColor::cellOfFar(__m128 argb, float distance) {
    const auto exponent = static_cast<int>(std::bit_cast<std::uint32_t>(distance / reach) >> 23) - 127;
    const int level = std::max(exponent, 0);  // of far; its reach is twice that of the one before
    std::vector<Cell>& cells = far[level];
    if (cells.empty()) {
        if (!afford(sizeof(Cell) << 3 * kFarBits)) return everything;
        cells.resize(std::size_t{1} << 3 * kFarBits);
    }
    const float levelReach = reach * static_cast<float>(2 << level);
    const float size = 2 * levelReach / static_cast<float>(1 << kFarBits);
    Box box{{}, size / 2};
    std::size_t index = 0;
    for (int axis = 0; axis < 3; ++axis) {
        const float from = argb[axis + 1] - (middle - levelReach);
        const int at = std::clamp(static_cast<int>(from / size), 0, (1 << kFarBits) - 1);
        box.middle[axis] = middle - levelReach + (static_cast<float>(at) + 0.5f) * size;
        index = index << kFarBits | static_cast<std::size_t>(at);
    }
    if (cells[index] == 0) cells[index] = makeCell(everything, box);
    return cells[index];
}

}  // namespace quillon::ImageLib
