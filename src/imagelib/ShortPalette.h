#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "imagelib/FourPixels.h"
#include "imagelib/Pixels.h"

namespace quillon::ImageLib {

// Finds the nearest entry as NearestColor does, by trying all, without a branch that depends on the color: for few
// entries, all of alpha 1, that is faster than any list.
class ShortPalette {
public:
    static constexpr std::size_t kMost = 32;

    // Whether a palette is one of these.
    static bool Holds(std::span<const Pixel32> palette);

    // Takes a copy of a palette that Holds().
    explicit ShortPalette(std::span<const Pixel32> palette);

    // The numbers of the nearest entries to four colors and to one, A, R, G, B.
    void find(const FourPixels& colors, std::uint32_t entries[4]) const;
    std::uint32_t find(__m128 argb) const;

private:
    // One entry, each channel in all four places.
    struct Entry {
        __m128 red, green, blue;
        __m128i number;
    };
    // Four entries.
    struct Block {
        __m128 red, green, blue;
    };

    struct Best;

    std::size_t half;  // of the entries, rounded up
    std::array<Entry, kMost> entries;
    bool isLong;  // more than 16 entries
    std::array<Block, kMost / 4> blocks;
};

}  // namespace quillon::ImageLib
