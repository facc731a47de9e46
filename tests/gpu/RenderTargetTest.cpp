#include "gpu/RenderTarget.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "support/GLTest.h"

namespace quillon::test {
namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

class RenderTargetTest : public GLTest {
protected:
    static void Fill(RenderTarget& target, float r, float g, float b, float a) {
        target.bindTarget({});
        glClearColor(r, g, b, a);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    static GLint Status() { return static_cast<GLint>(glCheckFramebufferStatus(GL_FRAMEBUFFER)); }
    using Box = std::vector<GLint>;
    static Box CurrentViewport() {
        Box box(4);
        glGetIntegerv(GL_VIEWPORT, box.data());
        return box;
    }
};

TEST_F(RenderTargetTest, StartsTransparentBlackAtEveryDepth) {
    glClearColor(1, 1, 1, 1);
    for (const std::uint32_t bits : {8u, 16u, 32u}) {
        RenderTarget target;
        EXPECT_FALSE(target.isUsable());
        ASSERT_TRUE(target.initTarget(5, 3, bits));
        EXPECT_TRUE(target.isUsable());
        EXPECT_TRUE(target.isArgbOrdered);
        EXPECT_EQ(Integer(GL_FRAMEBUFFER_BINDING), 0);
        target.bindTarget({});
        EXPECT_EQ(Status(), GL_FRAMEBUFFER_COMPLETE);
        const auto zero = [](auto channels) {
            return channels.size() == 60 &&
                   std::all_of(channels.begin(), channels.end(), [](auto v) { return v == 0; });
        };
        EXPECT_TRUE(bits == 8    ? zero(ReadBack<std::uint8_t>(target))
                    : bits == 16 ? zero(ReadBack<std::uint16_t>(target))
                                 : zero(ReadBack<float>(target)));
    }
}

TEST_F(RenderTargetTest, CutsTheViewportTowardZeroOrTakesTheWhole) {
    RenderTarget target;
    target.initTarget(200, 100, 8);
    const Box whole = {0, 0, 200, 100};
    for (const auto& [given, expected] :
         std::initializer_list<std::pair<Viewport, Box>>{{{}, whole},
                                                         {{10.9f, 20.9f, 100.9f, 50.9f}, {10, 20, 100, 50}},
                                                         {{-10.9f, -0.5f, 3.5f, 2}, {-10, 0, 3, 2}},
                                                         {{10, 20, 100, kNaN}, whole},
                                                         {{1, 2, 0.5f, 0.5f}, {1, 2, 0, 0}}}) {
        glViewport(7, 7, 7, 7);
        target.bindTarget(given);
        EXPECT_EQ(CurrentViewport(), expected)
            << given.x << ", " << given.y << ", " << given.width << ", " << given.height;
        EXPECT_EQ(Integer(GL_FRAMEBUFFER_BINDING), static_cast<GLint>(target.framebufferName.get()));
    }
    for (const float wild : {kNaN, 1e30f, -1e30f, std::numeric_limits<float>::infinity()}) {
        target.bindTarget({wild, wild, 10, 10});
        target.bindTarget({0, 0, std::abs(wild), std::abs(wild)});
    }
    while (glGetError() != GL_NO_ERROR) {
    }
}

// Channels in the middle between two words, just beside it, and what is no channel.
TEST_F(RenderTargetTest, RoundsWordsAsTheDriverDoes) {
    constexpr std::uint32_t kSide = 259;
    std::vector<float> channels = {kNaN, -kNaN, 2, -1, -0.0f, 1e-40f, std::numeric_limits<float>::infinity(), 1};
    for (std::uint32_t i = 0; channels.size() < kSide * kSide * 4; ++i) {
        const float middle = (static_cast<float>(i / 3 % 65536) + 0.5f) / 65535.0f;
        channels.push_back(std::nextafter(middle, static_cast<float>(i % 3)));
    }
    RenderTarget target;
    target.initTarget(kSide, kSide, 16);
    glBindTexture(GL_TEXTURE_2D, target.textureName.get());
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, kSide, kSide, GL_RGBA, GL_FLOAT, channels.data());
    const std::vector<std::uint16_t> words = ReadBack<std::uint16_t>(target);
    std::vector<std::uint16_t> ofDriver(channels.size());
    target.bindTarget({});
    glReadPixels(0, 0, kSide, kSide, GL_RGBA, GL_UNSIGNED_SHORT, ofDriver.data());
    EXPECT_TRUE(words == ofDriver);
}

TEST_F(RenderTargetTest, GivesZeroesForFifteenBitsWhichTheBufferIsTooShortFor) {
    RenderTarget target;
    target.initTarget(6, 5, 8);
    Fill(target, 1, 1, 1, 1);
    EXPECT_EQ(ReadBack<std::uint8_t>(target).back(), 255) << "as many bytes, which the buffer now has";
    target.initTarget(4, 4, 15);
    Fill(target, 1, 1, 1, 1);
    const auto* bytes = static_cast<const unsigned char*>(target.mapPixels());
    ASSERT_NE(bytes, nullptr);
    EXPECT_TRUE(std::all_of(bytes, bytes + 4 * 4 * 15 * 4 / 8, [](unsigned char byte) { return byte == 0; }));
    RenderTarget::unmapPixels();
    while (glGetError() != GL_NO_ERROR) {
    }
}

TEST_F(RenderTargetTest, MapsNothingWithoutASizeOrBeyondWhatTheBufferCanHave) {
    RenderTarget target;
    ASSERT_TRUE(target.initTarget(0, 0, 8));
    EXPECT_EQ(target.mapPixels(), nullptr);
    RenderTarget::unmapPixels();
    while (glGetError() != GL_NO_ERROR) {
    }
    ASSERT_TRUE(target.initTarget(4, 4, 32));
    // The size is worked out in 32 bits: the first and the last wrap to nothing, the second to a small one.
    for (const std::uint32_t width : {8192u, 8193u, 65536u}) {
        target.width = width;
        target.height = 8192;
        EXPECT_EQ(target.mapPixels(), nullptr) << width;
        RenderTarget::unmapPixels();
    }
    while (glGetError() != GL_NO_ERROR) {
    }
    target.width = target.height = 4;
    EXPECT_EQ(ReadBack<float>(target).size(), 64u);
}

// A frame that the driver cannot hold is no frame: neither an earlier one nor what the buffer has.
TEST_F(RenderTargetTest, MapsNothingWhereTheDriverRefusesTheStorage) {
    RenderTarget target;
    for (const auto& [width, height] : {std::pair{536870912u, 1u}, {1u, 536870912u}, {0x7FFFFFFFu, 10u}}) {
        ASSERT_TRUE(target.initTarget(4, 4, 8));
        Fill(target, 1, 1, 1, 1);
        target.initTarget(width, height, 8);
        target.bindTarget({});
        target.blitTo(target, true, true);
        EXPECT_EQ(target.mapPixels(), nullptr) << width;
    }
    while (glGetError() != GL_NO_ERROR) {
    }
}

}  // namespace
}  // namespace quillon::test
