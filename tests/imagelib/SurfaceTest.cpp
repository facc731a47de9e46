#include "imagelib/Surface.h"

#include <gtest/gtest.h>

#include "imagelib/TypedSurface.h"

namespace quillon {
namespace {

TEST(Surface, RowBytesAreCountedIn32Bits) {
    Surface surface;
    surface.init(0x10000000, 1, 32, true);
    EXPECT_EQ(surface.rowBytes, 0u);
    surface.init(0xFFFFFFFF, 1, 8, true);
    EXPECT_EQ(surface.rowBytes, 0xFFFFFFF8u >> 1);
}

TEST(TypedSurface, OwnerHasTightRowsAndAViewTakesItsSources) {
    ImageLib::Surface<ImageLib::Pixel15> owner(5, 3);
    EXPECT_EQ(owner.rowBytes, 40u);
    owner.row(2)[4].blue = 7;  // the last channel of the block: the address sanitizer watches

    ImageLib::Surface<ImageLib::Pixel15> tight(owner.pixels, 5, 3, 0);
    EXPECT_EQ(tight.rowBytes, 40u);
    EXPECT_FALSE(tight.ownsPixels);
    EXPECT_EQ(tight.row(2)[4].blue, 7);
    ImageLib::Surface<ImageLib::Pixel15> spaced(owner.pixels, 2, 2, 80);
    EXPECT_EQ(spaced.row(1), owner.row(2));
}

}  // namespace
}  // namespace quillon
