// The sample effects run: at every depth, at several sizes, and with instances that take turns.

#include "support/SampleTest.h"

namespace quillon::test {

namespace {

class SampleEffect : public SampleTest, public ::testing::WithParamInterface<const char*> {
protected:
    void SetUp() override { load(GetParam()); }
};

Picture MidGray(std::uint32_t width, std::uint32_t height) {
    Picture picture{width, height, {}};
    for (std::uint32_t i = 0; i < width * height; ++i)
        picture.samples.insert(picture.samples.end(), {1, 0.5f, 0.5f, 0.5f});
    return picture;
}

}  // namespace

TEST_P(SampleEffect, RendersAtEveryDepthAndSize) {
    addInstance();
    for (const std::uint32_t bitDepth : {8u, 16u, 32u}) {
        for (const auto& [width, height] : {std::pair{64u, 36u}, {37u, 21u}, {1u, 1u}, {130u, 7u}}) {
            const Picture picture = render(MidGray(width, height), bitDepth);
            ASSERT_FALSE(picture.samples.empty());
            // The middle of the picture stays opaque, but where a COLOR control says the alpha: its default is on
            // another scale than the host's values.
            const std::string name = GetParam();
            if (width * height > 1000 && name != "clouds" && name != "halftone") {
                EXPECT_NEAR(picture.at(picture.width / 2, picture.height / 2)[0], 1.0f, 0.01f);
            }
        }
    }
}

TEST_P(SampleEffect, GivesAnInstanceItsOwnPictureWhileAnotherTakesTurns) {
    SequenceHandle* small = addInstance();
    const Picture alone = render(MidGray(48, 32), 32);
    SequenceHandle* large = addInstance();
    for (int turn = 0; turn < 3; ++turn) {
        engine.selectSequence(large);
        render(MidGray(96, 80), 8);
        engine.selectSequence(small);
        EXPECT_TRUE(SamePicture(alone, render(MidGray(48, 32), 32)));
    }
}

// Ids are given anew from the lowest free one on: the next one tells how many there are. Sizes and instances repeat
// after six frames.
TEST_P(SampleEffect, KeepsNoMoreFrameByFrame) {
    const std::string nextIds =
        "[QL_initSurface(1, 1, 8), QL_initRenderTarget(1, 1, 8), QL_initTexture('')]"
        ".map(function (id) { QL_release(id); return id; })";
    SequenceHandle* both[] = {addInstance(), addInstance()};
    std::string ids;
    for (int number = 0; number < 30; ++number) {
        engine.selectSequence(both[number % 2]);
        render(MidGray(number % 3 == 0 ? 20 : 30, 20), 8, number / 25.0);
        if (number == 11) ids = eval(nextIds);
    }
    EXPECT_EQ(eval(nextIds), ids);
}

INSTANTIATE_TEST_SUITE_P(, SampleEffect,
                         ::testing::Values("clouds", "displace", "echo", "fringe", "glow", "grade", "grain", "halftone",
                                           "ink", "kaleidoscope", "lens", "matte", "mosaic", "palette", "streaks"),
                         [](const auto& entry) { return std::string(entry.param); });

}  // namespace quillon::test
