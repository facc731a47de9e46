#pragma once

#include <array>
#include <cstdint>

namespace quillon {

// One character of the overlay's bitmap font, in the terms of glBitmap.
struct Glyph {
    static constexpr int kHeight = 12;
    static constexpr int kBelowBaseline = 3;

    int width = 0;    // pixels, at most 8; 0: nothing to draw
    int advance = 0;  // pixels from this character to the next
    // A byte a row, the lowest row first, the leftmost pixel in the highest bit.
    std::array<std::uint8_t, kHeight> rows{};
};

// The font has the codes 32 to 126; every other code is the empty glyph.
const Glyph& FindGlyph(unsigned code);

}  // namespace quillon
