// The sample effects: what they draw, at every depth and size, for instances that take turns, and over time.

#include <cmath>
#include <map>

#include "support/SampleTest.h"

namespace quillon::test {

namespace {

// Ramps of colors, a white square, a black one, and a soft edge at the bottom; no two rows or columns are the same.
Picture Scene(std::uint32_t width, std::uint32_t height) {
    Picture picture{width, height, {}};
    for (std::uint32_t y = 0; y < height; ++y)
        for (std::uint32_t x = 0; x < width; ++x) {
            const float across = static_cast<float>(x) / static_cast<float>(width);
            const float down = static_cast<float>(y) / static_cast<float>(height);
            const float alpha = down < 0.75f ? 1.0f : std::round((1 - down) * 4 * 255) / 255;
            const bool isWhite = across > 0.5f && across < 0.7f && down > 0.2f && down < 0.5f;
            const bool isBlack = across > 0.2f && across < 0.35f && down > 0.4f && down < 0.7f;
            for (const float channel : {across, down, 1 - across})
                picture.samples.push_back(isWhite ? 1.0f : isBlack ? 0.0f : std::round(channel * 255) / 255);
            picture.samples.insert(picture.samples.end() - 3, alpha);
        }
    return picture;
}

Picture Flat(const float (&pixel)[4]) {
    Picture picture{12, 9, {}};
    for (int i = 0; i < 12 * 9; ++i) picture.samples.insert(picture.samples.end(), pixel, pixel + 4);
    return picture;
}

constexpr float kBlack[4] = {1, 0, 0, 0};

class SampleEffect : public SampleTest, public ::testing::WithParamInterface<const char*> {};

}  // namespace

TEST_P(SampleEffect, RendersAtEveryDepthAndSize) {
    load(GetParam());
    addInstance();
    for (const std::uint32_t bitDepth : {8u, 16u, 32u})
        for (const auto& [width, height] : {std::pair{64u, 36u}, {37u, 21u}, {1u, 1u}, {130u, 7u}})
            EXPECT_FALSE(render(Scene(width, height), bitDepth).samples.empty());
}

TEST_P(SampleEffect, GivesAnInstanceItsOwnPictureWhileAnotherTakesTurns) {
    load(GetParam());
    SequenceHandle* small = addInstance();
    const Picture single = render(Scene(48, 32), 32);
    SequenceHandle* large = addInstance();
    for (int turn = 0; turn < 3; ++turn) {
        engine.selectSequence(large);
        render(Scene(96, 80), 8);
        engine.selectSequence(small);
        EXPECT_TRUE(SamePicture(single, render(Scene(48, 32), 32)));
    }
}

// New ids start from the lowest free one: the next one shows how many there are. Sizes and instances repeat after six
// frames.
TEST_P(SampleEffect, KeepsNoMoreFrameByFrame) {
    const std::string nextIds =
        "[QL_initSurface(1, 1, 8), QL_initRenderTarget(1, 1, 8), QL_initTexture('')]"
        ".map(function (id) { QL_release(id); return id; })";
    load(GetParam());
    SequenceHandle* both[] = {addInstance(), addInstance()};
    std::string ids;
    for (int number = 0; number < 30; ++number) {
        engine.selectSequence(both[number % 2]);
        render(Scene(number % 3 == 0 ? 20 : 30, 20), 8, number / 25.0);
        if (number == 11) ids = eval(nextIds);
    }
    EXPECT_EQ(eval(nextIds), ids);
}

INSTANTIATE_TEST_SUITE_P(, SampleEffect,
                         ::testing::Values("clouds", "displace", "echo", "fringe", "glow", "grade", "grain", "halftone",
                                           "ink", "kaleidoscope", "lens", "matte", "mosaic", "palette", "streaks"),
                         [](const auto& entry) { return std::string(entry.param); });

struct Look {
    const char* picture;
    const char* effect;
    std::map<std::string, float> numbers = {};
    std::map<std::string, std::int32_t> entries = {};
    // Not 16 bits, whose steps are others: a dithered pixel may fall to the other side.
    std::vector<std::uint32_t> depths = {8, 32};
};

const Look kLooks[] = {
    {"clouds", "clouds"},
    {"displace", "displace", {}, {}, {8}},  // middle gray in a map depends on the depth
    {"echo", "echo"},
    {"fringe", "fringe"},
    {"glow", "glow"},
    {"grade", "grade", {{"warmth", 60.0f}, {"contrast", 130.0f}}},
    {"grain", "grain"},
    {"halftone", "halftone"},
    {"ink", "ink"},
    {"kaleidoscope", "kaleidoscope"},
    {"lens", "lens"},
    {"matte", "matte"},
    {"mosaic", "mosaic"},
    {"palette-black-white", "palette", {}, {{"palette", 1}, {"dither", 2}}},
    {"palette-chosen", "palette", {}, {{"palette", 3}, {"dither", 1}}},
    {"palette-pattern", "palette", {}, {{"palette", 20}, {"dither", 12}}},
    {"palette-blocks", "palette", {{"pixelSize", 5.0f}}, {{"palette", 8}}},
    {"streaks", "streaks"},
};

using SampleLooks = SampleTest;

TEST_F(SampleLooks, AreAsInTheirPictures) {
    for (const Look& look : kLooks) {
        load(look.effect);
        SequenceHandle* const instance = addInstance();
        // As a host has it: its colors run from 0 to 1, while a script declares them from 0 to 255.
        for (std::uint32_t i = 0; i < engine.parameterCount(); ++i) {
            Parameter& control = *engine.parameterInfo(i);
            for (int at = 0; control.kind == COLOR && at < 4; ++at) control.setFloatAt(at, control.floatAt(at) / 255);
        }
        for (const auto& [control, value] : look.numbers) set(control, value);
        for (const auto& [control, value] : look.entries) set(control, value);
        for (const std::uint32_t bitDepth : look.depths)
            EXPECT_TRUE(LooksAs(look.picture, render(Scene(32, 24), bitDepth, 1), 2.0f / 255))
                << look.picture << " at " << bitDepth << " bits";
        removeInstance(instance);
    }
}

using EchoSample = SampleTest;

// A bright picture at the first moment, black ones at all others; a half-life is a quarter of a second.
TEST_F(EchoSample, FadesByTimeAndStartsAnewWhereTheOrderBreaks) {
    const struct {
        std::vector<double> moments;
        float left;  // of the first picture, in the last
    } kCases[] = {
        {{0, 0.25}, 0.5f}, {{1, 1.25, 1.5}, 0.25f}, {{1, 1.125, 1.25, 1.5}, 0.25f}, {{1, 1.25, 1.25}, 0.5f},
        {{1, 1}, 0},       {{1, 0.9}, 0},           {{1, 1.25, 1.125}, 0},          {{1, 1.75}, 0},
        {{-0.25, 0}, 0},
    };
    load("echo");
    for (const auto& [moments, left] : kCases) {
        SequenceHandle* instance = addInstance();
        set("halfLife", 0.25f);
        set("zoom", 100.0f);
        for (const std::uint32_t bitDepth : {8u, 32u}) {
            Picture expected = Scene(12, 9);
            for (std::size_t i = 0; i < expected.samples.size(); i += 4) expected.samples[i] = 1;
            Picture last = render(expected, bitDepth, moments[0]);
            for (std::size_t i = 1; i < moments.size(); ++i) last = render(Flat(kBlack), bitDepth, moments[i]);
            for (std::size_t i = 0; i < expected.samples.size(); ++i)
                if (i % 4 != 0) expected.samples[i] *= left;
            EXPECT_TRUE(SamePicture(expected, last, bitDepth == 8 ? 0.6f / 255 : 1e-5f))
                << ::testing::PrintToString(moments);
        }
        removeInstance(instance);
    }
}

TEST_F(EchoSample, ForgetsOtherSizesAndWhatIsNoNumber) {
    load("echo");
    addInstance();
    render(Scene(20, 9), 8, 1);
    EXPECT_TRUE(SamePicture(Flat(kBlack), render(Flat(kBlack), 8, 1.04)));
    for (const float strange : {std::nanf(""), INFINITY}) {
        Picture input = Scene(12, 9);
        input.samples[4 * 14 + 1] = strange;
        render(input, 32, 2);
        for (const float sample : render(Flat(kBlack), 32, 2.25).samples) EXPECT_TRUE(std::isfinite(sample));
    }
}

TEST_F(EchoSample, KeepsTheTrailsOfFourInstancesApart) {
    load("echo");
    SequenceHandle* all[] = {addInstance(), addInstance(), addInstance(), addInstance(), addInstance()};
    for (int i = 0; i < 5; ++i) {
        engine.selectSequence(all[i]);
        set("halfLife", 0.25f);
        set("zoom", 100.0f);
        render(Flat({1, static_cast<float>(i) / 5.0f, 1, 1}), 32, 1);
    }
    for (int i = 4; i >= 0; --i) {
        engine.selectSequence(all[i]);
        const Picture left = render(Flat(kBlack), 32, 1.25);
        // The first instance's memory has made room for the fifth's.
        EXPECT_NEAR(left.at(3, 2)[1], static_cast<float>(i) / 10.0f, 1e-5f) << i;
        EXPECT_NEAR(left.at(3, 2)[2], i == 0 ? 0.0f : 0.5f, 1e-5f) << i;
    }
}

}  // namespace quillon::test
