#include "support/GLTest.h"

#include "gpu/GLEntryPoints.h"

namespace quillon::test {

void GLTest::SetUp() {
    ASSERT_EQ(context.create(), 0);
    lock.emplace(&context);
    ASSERT_TRUE(lock->isHeld()) << "these tests need a GL context";
    LoadGLEntryPoints();
}

void GLTest::TearDown() {
    if (lock && lock->isHeld()) {
        EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
    }
    lock.reset();
    context.destroy();
}

GLint GLTest::Integer(GLenum what) {
    GLint values[4] = {};
    glGetIntegerv(what, values);
    return values[0];
}

}  // namespace quillon::test
