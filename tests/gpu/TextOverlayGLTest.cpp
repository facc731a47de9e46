#include "gpu/TextOverlay.h"

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

}  // namespace
}  // namespace quillon
