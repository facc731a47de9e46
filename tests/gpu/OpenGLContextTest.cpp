#include "gpu/OpenGLContext.h"

#include <GL/glew.h>
#include <gtest/gtest.h>

#include <chrono>
#include <future>

#include "gpu/GLLockScope.h"
#include "support/GLTest.h"

namespace quillon::test {
namespace {

// What `call` gives on another thread.
template <class Call>
auto Elsewhere(Call call) {
    return std::async(std::launch::async, call).get();
}

TEST(OpenGLContext, RefusesUntilItIsCreated) {
    OpenGLContext context;
    EXPECT_EQ(context.makeCurrent(), 7);
    EXPECT_FALSE(GLLockScope(&context).isHeld());
    EXPECT_FALSE(GLLockScope(nullptr).isHeld());
    EXPECT_FALSE(GLLockScope::Enter(nullptr));
    GLLockScope::Leave(nullptr);
    context.clearCurrent();
    EXPECT_EQ(context.destroy(), 0);
    EXPECT_TRUE(Elsewhere([&] { return context.waitLock() ? (context.releaseLock(), true) : false; }))
        << "a failed make-current leaves the mutex to others";
}

class GLLock : public GLTest {};

TEST_F(GLLock, FailsAtOnceOnAnotherThreadAndWaitsForNothing) {
    EXPECT_EQ(Elsewhere([&] { return context.makeCurrent(); }), 7);
    EXPECT_FALSE(Elsewhere([&] { return GLLockScope(&context).isHeld(); }));
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR}) << "the holder goes on";
    lock.reset();
    EXPECT_TRUE(Elsewhere([&] { return GLLockScope(&context).isHeld(); }));
    EXPECT_TRUE(GLLockScope(&context).isHeld());
}

TEST_F(GLLock, NestsOnOneThreadAndLosesTheContextWithTheInnerScope) {
    {
        const GLLockScope inner(&context);
        EXPECT_TRUE(inner.isHeld());
    }
    EXPECT_EQ(Elsewhere([&] {
                  const int result = context.makeCurrent();
                  context.clearCurrent();
                  return result;
              }),
              0)
        << "nothing is current here any more";
    auto waiter = std::async(std::launch::async, [&] { return context.waitLock() ? (context.releaseLock(), 1) : 0; });
    EXPECT_EQ(waiter.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout) << "the outer scope owns it";
    lock.reset();
    EXPECT_EQ(waiter.get(), 1);
}

}  // namespace
}  // namespace quillon::test
