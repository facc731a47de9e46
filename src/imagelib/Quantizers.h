#pragma once

#include <cstdint>
#include <span>

#include "imagelib/FourPixels.h"

namespace quillon::ImageLib {

// What a reduction puts in a color's place. Each quantizer says which lanes of a color take part in that, from
// kFirstLane to before kEndLane; passes carry only those. `number` gives the numbers of the chosen entries; `choose`
// also puts the entries' colors in the same lanes.

// Entry 1, white, where red is strictly above the threshold; else entry 0, black. Other lanes decide nothing.
class TwoLevels {
public:
    static constexpr int kFirstLane = 1;
    static constexpr int kEndLane = 2;

    explicit TwoLevels(float value) : threshold(value) {}  // on the scale of 0 to 1

    // All bits of a pixel's lane where it is white, none where it is black.
    __m128 above(const FourPixels& colors) const { return _mm_cmpgt_ps(colors.lane[1], _mm_set1_ps(threshold)); }
    // See above; alpha, green and blue stay.
    void choose(FourPixels& colors, std::uint32_t entries[4]) const {
        const __m128 white = above(colors);
        const int bits = _mm_movemask_ps(white);
        ForLanes<4>([&](auto i) { entries[i] = static_cast<std::uint32_t>(bits >> i & 1); });
        colors.lane[1] = _mm_and_ps(white, _mm_set1_ps(1.0f));
    }

    // A pixel in a row of floats, for passes that take one at a time.
    using One = float;
    static void Unpack(const FourPixels& colors, float* row) { _mm_storeu_ps(row, colors.lane[1]); }
    // The same for one: gives the entry, and puts its color in place of this one.
    std::uint32_t choose(float& red) const {
        const bool white = red > threshold;
        red = white ? 1.0f : 0.0f;
        return white ? 1 : 0;
    }

private:
    float threshold;
};

// The nearest entry of a palette, which `Search` finds. With `Opaque` every color's alpha is exactly 1, and so are the
// entries': its error is 0 and is not carried.
template <class Search, bool Opaque>
class FromPalette {
public:
    static constexpr int kFirstLane = Opaque ? 1 : 0;
    static constexpr int kEndLane = 4;

    // Search and palette outlive it. The palette has the entries that the search numbers.
    FromPalette(Search& nearest, std::span<const Pixel32> colors) : search(nearest), palette(colors) {}

    // See above.
    void number(const FourPixels& colors, std::uint32_t entries[4]) const { search.find(colors, entries); }
    void choose(FourPixels& colors, std::uint32_t entries[4]) const {
        if (Opaque) colors.lane[0] = _mm_set1_ps(1.0f);
        search.find(colors, entries);
        colors = FourPixels::Transposed(color(entries[0]), color(entries[1]), color(entries[2]), color(entries[3]));
    }

    // One pixel, A, R, G, B, and four of them one after the other in a row of 16 floats.
    using One = __m128;
    static void Unpack(const FourPixels& colors, float* row) {
        const FourPixels single =
            FourPixels::Transposed(colors.lane[0], colors.lane[1], colors.lane[2], colors.lane[3]);
        for (int i = 0; i < 4; ++i) _mm_storeu_ps(row + i * 4, single.lane[i]);
    }
    // Gives the entry, and puts its color in place of this one.
    std::uint32_t choose(__m128& argb) const {
        const std::uint32_t entry = search.find(argb);
        argb = color(entry);
        return entry;
    }

private:
    __m128 color(std::uint32_t entry) const { return _mm_loadu_ps(&palette[entry].alpha); }

    Search& search;
    std::span<const Pixel32> palette;
};

}  // namespace quillon::ImageLib
