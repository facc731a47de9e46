#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "imagelib/FourPixels.h"
#include "imagelib/Pixels.h"

namespace quillon::ImageLib {

// Finds the entry of a palette that is nearest to a color: the smallest (A + R) + (G + B) of the squared differences
// as single floats come out, the first of equal ones, and entry 0 when no distance is below 1000000 (NaN never is).
//
// Space is cut into cells, and each cell, once a color falls into it, receives a list of the entries that can win
// there: an entry is left out only where another is nearer in the whole cell by more than all rounding together. Cells
// are finest where colors are expected and grow with the distance from there, up to kLevels doublings; beyond that, and
// where alpha is more than 2 away from opaque, every entry is tried.
class NearestColor {
public:
    // Where most colors are: each channel from `low` to `high`, which include 0 to 1 and stay within -1 and 2.
    struct Range {
        float low;
        float high;
    };

    // At most 256 entries, channels 0 to 1, alpha 0 or 1. `pixels` to be looked up bound the memory: 8 bytes for
    // each, and 32 KiB.
    NearestColor(std::span<const Pixel32> palette, std::uint64_t pixels, Range expected);

    // The numbers of the nearest entries to four colors and to one, A, R, G, B. May make cells: one thread at a time.
    void find(const FourPixels& colors, std::uint32_t entries[4]);
    std::uint32_t find(__m128 argb);

private:
    // Level n covers distances up to reach * 2^n from the middle, on each axis.
    static constexpr int kLevels = 8;
    static constexpr float kAlphaReach = 2.0f;
    // Each channel of an entry that only fills a list up: its distance is never the smallest.
    static constexpr float kFar = std::numeric_limits<float>::infinity();

    // Four entries by lane; a list is filled up with entries that are far from everything.
    struct Block {
        __m128 lane[4];
    };
    // 0: not made yet. Else one entry (kSingle | kShort | entry), or a list of blocks (first block << 8 | number of
    // blocks), which with kShort is one block.
    using Cell = std::uint32_t;
    static constexpr Cell kSingle = 0x80000000;
    static constexpr Cell kShort = 0x40000000;
    static constexpr Cell ListOf(std::size_t firstBlock, std::size_t count) {
        return static_cast<Cell>(firstBlock << 8 | count) | (count == 1 ? kShort : 0);
    }
    // Block 0 for a single entry.
    static constexpr std::size_t FirstBlockOf(Cell cell) { return (cell & ~(kSingle | kShort)) >> 8; }
    // Bounds the blocks to what a cell can name.
    static constexpr std::uint64_t kMostMemory = 1u << 28;

    struct Distances;
    struct Box {
        float middle[3];
        float halfSize;
    };

    std::uint32_t resolve(Cell cell, __m128 argb) const;
    std::uint32_t scan(Cell list, __m128 argb) const;
    std::uint32_t scanEverything(__m128 argb) const;
    Cell cellOfNear(std::uint32_t index);
    Cell cellOfFar(__m128 argb, float distance);
    Cell makeCell(Cell from, const Box& box);
    Cell makeList(Cell from, std::span<const std::uint8_t> places);
    void addEmptyBlock();
    bool afford(std::uint64_t bytes);

    const float middle;
    const float reach;
    std::vector<Block> blocks;
    std::vector<std::array<std::uint8_t, 4>> entriesOf;  // the entries in a block
    Cell everything = 0;
    std::uint64_t memory;
    int nearBits = 0;  // cells per axis of `near`, as a power of two
    std::vector<Cell> near;
    std::vector<Cell> coarse;  // the same space with a quarter of the cells per axis
    std::vector<Cell> far[kLevels - 1];
};

}  // namespace quillon::ImageLib
