#include "gpu/GlyphTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace quillon {
namespace {

bool IsInked(const Glyph& glyph) {
    return std::any_of(glyph.rows.begin(), glyph.rows.end(), [](auto row) { return row != 0; });
}

TEST(GlyphTable, HasACharacterOfItsOwnForEachCode) {
    std::set<std::array<std::uint8_t, Glyph::kHeight>> shapes;
    for (unsigned code = 33; code <= 126; ++code) {
        const Glyph& glyph = FindGlyph(code);
        EXPECT_TRUE(IsInked(glyph)) << code;
        EXPECT_TRUE(shapes.insert(glyph.rows).second) << code << " looks like another one";
        EXPECT_EQ(glyph.advance, glyph.width + 1) << code;
        // Nothing beyond the width: glBitmap would not draw it.
        for (const std::uint8_t row : glyph.rows) EXPECT_EQ(row & (0xFF >> glyph.width), 0) << code;
    }
    EXPECT_LT(FindGlyph('i').width, FindGlyph('m').width);
}

TEST(GlyphTable, HasNothingForOtherCodes) {
    for (unsigned code : {0u, 10u, 31u, 127u, 128u, 255u, 0xFFFFFFFFu}) EXPECT_EQ(FindGlyph(code).width, 0) << code;
    EXPECT_FALSE(IsInked(FindGlyph(' ')));
    EXPECT_GT(FindGlyph(' ').advance, 0);
}

}  // namespace
}  // namespace quillon
