#pragma once

#include <GL/glew.h>
#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "gpu/GLLockScope.h"
#include "gpu/OpenGLContext.h"
#include "gpu/RenderTarget.h"

namespace quillon::test {

// A GL context of the test's own, current and locked from the first line of the test to its last. Fails without GL,
// and when the test leaves a GL error.
class GLTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // The target read back: Channel is the type of its depth. Empty when nothing could be mapped.
    template <class Channel>
    static std::vector<Channel> ReadBack(RenderTarget& target) {
        std::vector<Channel> channels;
        if (const void* pixels = target.mapPixels()) {
            const auto* first = static_cast<const Channel*>(pixels);
            channels.assign(first, first + std::size_t{4} * target.width * target.height);
        }
        RenderTarget::unmapPixels();
        return channels;
    }

    static GLint Integer(GLenum what);

    OpenGLContext context;
    std::optional<GLLockScope> lock;
};

}  // namespace quillon::test
