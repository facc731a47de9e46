#include "gpu/TextOverlay.h"

#include <algorithm>
#include <vector>

#include "gpu/GlyphTable.h"
#include "support/GLTest.h"

namespace quillon {
namespace {

class TextOverlayGLTest : public test::GLTest {
protected:
    void SetUp() override {
        GLTest::SetUp();
        ForgetTextOverlay();
    }

    // The overlay's projection is of no extent, which GL refuses.
    static void draw(const std::string& text) {
        textOverlay(text);
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
    }
};

TEST_F(TextOverlayGLTest, ReachesNoTarget) {
    RenderTarget target;
    ASSERT_TRUE(target.initTarget(64, 64, 8));
    target.bindTarget({});
    draw("Shader \"glow\"\nShader compilation failed:\nline 1\n");
    EXPECT_EQ(integer(GL_FRAMEBUFFER_BINDING), 0);
    GLint viewport[4];
    glGetIntegerv(GL_VIEWPORT, viewport);
    EXPECT_EQ(viewport[2], 0);
    EXPECT_EQ(viewport[3], 0);
    const std::vector<std::uint8_t> pixels = readBack<std::uint8_t>(target);
    ASSERT_EQ(pixels.size(), 64u * 64 * 4);
    EXPECT_TRUE(std::all_of(pixels.begin(), pixels.end(), [](auto channel) { return channel == 0; }));
}

TEST_F(TextOverlayGLTest, PutsTheUnpackParametersBack) {
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 77);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 2);
    draw("text");
    EXPECT_EQ(integer(GL_UNPACK_ROW_LENGTH), 77);
    EXPECT_EQ(integer(GL_UNPACK_ALIGNMENT), 2);
    EXPECT_EQ(integer(GL_CURRENT_PROGRAM), 0);
    EXPECT_EQ(integer(GL_ACTIVE_TEXTURE), GL_TEXTURE0);
    EXPECT_EQ(integer(GL_TEXTURE_BINDING_2D), 0);
    EXPECT_EQ(integer(GL_MATRIX_MODE), GL_MODELVIEW);
}

TEST_F(TextOverlayGLTest, HasAListForEachCodeOfSevenBits) {
    draw("\xFF\x80 and codes without a list");
    const GLint first = integer(GL_LIST_BASE);
    ASSERT_NE(first, 0);
    for (GLint code = 0; code < 128; ++code) EXPECT_TRUE(glIsList(first + code)) << code;
    EXPECT_FALSE(glIsList(first + 128));
    draw("again");
    EXPECT_EQ(integer(GL_LIST_BASE), first) << "made once";
}

TEST_F(TextOverlayGLTest, DrawsItsGlyphsByTheirLists) {
    draw("");
    constexpr int kSize = 16;
    RenderTarget target;
    ASSERT_TRUE(target.initTarget(kSize, kSize, 8));
    target.bindTarget({});
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(0, kSize, 0, kSize, -1, 1);
    glRasterPos2i(2, 4);
    glCallLists(1, GL_UNSIGNED_BYTE, "R");

    const std::vector<std::uint8_t> pixels = readBack<std::uint8_t>(target);
    ASSERT_EQ(pixels.size(), kSize * kSize * 4u);
    const Glyph& glyph = FindGlyph('R');
    for (int y = 0; y < kSize; ++y) {
        for (int x = 0; x < kSize; ++x) {
            const int row = y - 4 + Glyph::kBelowBaseline;
            const int column = x - 2;
            const bool inside = row >= 0 && row < Glyph::kHeight && column >= 0 && column < glyph.width;
            const bool inked = inside && (glyph.rows[static_cast<std::size_t>(row)] & (0x80 >> column)) != 0;
            EXPECT_EQ(pixels[static_cast<std::size_t>(y * kSize + x) * 4], inked ? 255 : 0) << x << ", " << y;
        }
    }
}

}  // namespace
}  // namespace quillon
