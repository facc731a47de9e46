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
    static void Draw(const std::string& text) {
        textOverlay(text);
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
    }
};

TEST_F(TextOverlayGLTest, PutsTheUnpackParametersBack) {
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 77);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 2);
    Draw("text");
    EXPECT_EQ(Integer(GL_UNPACK_ROW_LENGTH), 77);
    EXPECT_EQ(Integer(GL_UNPACK_ALIGNMENT), 2);
    EXPECT_EQ(Integer(GL_CURRENT_PROGRAM), 0);
    EXPECT_EQ(Integer(GL_ACTIVE_TEXTURE), GL_TEXTURE0);
    EXPECT_EQ(Integer(GL_TEXTURE_BINDING_2D), 0);
    EXPECT_EQ(Integer(GL_MATRIX_MODE), GL_MODELVIEW);
}

}  // namespace
}  // namespace quillon
