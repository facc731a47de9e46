#include "entities/Sequence.h"

#include "entities/Context.h"
#include "support/GLTest.h"
#include "support/Pixels.h"

namespace quillon::test {
namespace {

class SequenceTest : public GLTest {
protected:
    void SetUp() override {
        GLTest::SetUp();
        entities.Setup();
        entities.current = entities.NewSequence();
    }
    void TearDown() override {
        entities.Clear();
        GLTest::TearDown();
    }
    static FrameImage Image(std::uint32_t width, std::uint32_t height, std::uint32_t bits,
                            const void* pixels = nullptr) {
        FrameImage image;
        image.width = width;
        image.height = height;
        image.bits = bits;
        image.pixels = pixels;
        if (pixels) image.stride = std::uint64_t{width} * bits / 2;
        return image;
    }

    Context& entities = Context::Instance();
    Sequence& sequence() { return entities.CurrentSequence(); }
    RenderTarget& target() { return entities.FindRenderTarget(sequence().renderTarget); }
    Texture& input() { return entities.FindTexture(sequence().texture); }
};

TEST_F(SequenceTest, UploadsItsInputInTheHostsRange) {
    const Bytes pixels = BytesOf<std::uint16_t>({0, 1, 16384, 32768});
    sequence().setInput(Image(1, 1, 16, pixels.data()));
    const std::uint32_t id = sequence().texture;
    ASSERT_TRUE(input().textureName);
    EXPECT_TRUE(input().isArgbOrdered);
    EXPECT_EQ(ChannelsOf<std::uint16_t>(*input().pixelCopy()), (std::vector<std::uint16_t>{0, 2, 32768, 65534}));
    FrameImage stored = Image(1, 1, 8);
    stored.stride = 4;
    stored.storage = BytesOf<std::uint8_t>({1, 2, 3, 4});
    stored.pixels = pixels.data();  // storage goes before it
    sequence().setInput(stored);
    EXPECT_EQ(sequence().texture, id);
    EXPECT_EQ(*input().pixelCopy(), stored.storage);
    sequence().setInput(Image(9, 9, 8));
    EXPECT_EQ(input().width, 1u) << "without pixels nothing happens";
}

TEST_F(SequenceTest, LosesOneFrameOfAReleasedInput) {
    const Bytes pixels = DistinctPicture(2, 2, 8);
    sequence().setInput(Image(2, 2, 8, pixels.data()));
    entities.Release(sequence().texture);
    sequence().setInput(Image(2, 2, 8, pixels.data()));
    EXPECT_TRUE(input().textureName);
    EXPECT_EQ(input().pixelCopy(), nullptr);
    Texture& none = entities.FindTexture(0);
    EXPECT_EQ(none.width, 0u);
    EXPECT_EQ(none.pixelCopy(), nullptr);
    GLint width = -1;
    glBindTexture(GL_TEXTURE_2D, 0);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &width);
    EXPECT_EQ(width, 0) << "the pixels did not go into GL's own texture 0";
    sequence().setInput(Image(2, 2, 8, pixels.data()));
    EXPECT_EQ(*input().pixelCopy(), pixels);
}

TEST_F(SequenceTest, LeavesItsEntitiesWhenItGoes) {
    const Bytes pixels = DistinctPicture(2, 2, 8);
    sequence().prepareOutput(Image(2, 2, 8), 0);
    sequence().setInput(Image(2, 2, 8, pixels.data()));
    const std::uint32_t targetId = sequence().renderTarget, textureId = sequence().texture;
    entities.DeleteSequence(1);
    EXPECT_TRUE(entities.FindRenderTarget(targetId).isUsable());
    EXPECT_TRUE(entities.FindTexture(textureId).textureName);
}

}  // namespace
}  // namespace quillon::test
