// What the sample effects palette and echo make of pictures on the CPU.

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <vector>

#include "imagelib/FixedPalettes.h"
#include "support/SampleTest.h"

namespace quillon::test {

namespace {

using PaletteSample = SampleTest;
using EchoSample = SampleTest;

constexpr std::int32_t kBlackAndWhite = 1, kAllColors = 8, kSixteenPcColors = 20;       // of the control `palette`
constexpr std::int32_t kNone = 1, kFloydSteinberg = 2, kPattern4 = 12, kPattern8 = 13;  // of the control `dither`

// Ramps; no two rows or columns are the same.
Picture Ramps(std::uint32_t width, std::uint32_t height, float alpha) {
    Picture picture{width, height, {}};
    for (std::uint32_t y = 0; y < height; ++y)
        for (std::uint32_t x = 0; x < width; ++x) {
            const float red = std::round(255.0f * static_cast<float>(x) / static_cast<float>(width)) / 255.0f;
            const float green = std::round(255.0f * static_cast<float>(y) / static_cast<float>(height)) / 255.0f;
            picture.samples.insert(picture.samples.end(), {alpha, red, green, 1.0f - red});
        }
    return picture;
}

Picture Flat(std::uint32_t width, std::uint32_t height, const float (&pixel)[4]) {
    Picture picture{width, height, {}};
    for (std::uint32_t i = 0; i < width * height; ++i) picture.samples.insert(picture.samples.end(), pixel, pixel + 4);
    return picture;
}

using Color = std::array<float, 3>;

std::set<Color> ColorsOf(const Picture& picture) {
    std::set<Color> colors;
    for (std::size_t i = 0; i < picture.samples.size(); i += 4)
        colors.insert({picture.samples[i + 1], picture.samples[i + 2], picture.samples[i + 3]});
    return colors;
}

double BrightnessOf(const Picture& picture) {
    double sum = 0;
    for (std::size_t i = 0; i < picture.samples.size(); i += 4)
        sum += 0.2126 * picture.samples[i + 1] + 0.7152 * picture.samples[i + 2] + 0.0722 * picture.samples[i + 3];
    return sum / static_cast<double>(picture.samples.size() / 4);
}

// Whether the palette, a fixed one or black and white, has the color, at a depth with steps of this size.
bool Holds(std::int32_t palette, const Color& color, float step) {
    std::vector<ImageLib::Pixel32> entries = ImageLib::FixedPalette(palette);
    if (palette == kBlackAndWhite) entries = {{1, 0, 0, 0}, {1, 1, 1, 1}};
    return std::any_of(entries.begin(), entries.end(), [&](const ImageLib::Pixel32& entry) {
        return std::abs(entry.red - color[0]) < step && std::abs(entry.green - color[1]) < step &&
               std::abs(entry.blue - color[2]) < step;
    });
}

}  // namespace

TEST_F(PaletteSample, HoldsOnlyColorsOfThePaletteAtEveryDepthAndStaysAsBright) {
    load("palette");
    addInstance();
    set("amount", 0.5f);
    for (const std::uint32_t bitDepth : {8u, 16u, 32u}) {
        const float step = bitDepth == 8 ? 0.1f / 255 : 2.0f / 32768;
        const Picture input = Ramps(96, 64, 1);
        for (std::int32_t palette = 1; palette <= 21; ++palette) {
            if (palette > kBlackAndWhite && palette < 9) continue;
            set("palette", palette);
            for (const std::int32_t dither : {kNone, kFloydSteinberg, kPattern8}) {
                set("dither", dither);
                const Picture output = render(input, bitDepth);
                for (const Color& color : ColorsOf(output))
                    EXPECT_TRUE(Holds(palette, color, step))
                        << palette << " " << dither << " " << bitDepth << ": " << ::testing::PrintToString(color);
                if (palette == kSixteenPcColors || (palette == kBlackAndWhite && dither == kFloydSteinberg)) {
                    EXPECT_NEAR(BrightnessOf(output), BrightnessOf(input), dither == kNone ? 0.1 : 0.03)
                        << palette << " " << dither << " " << bitDepth;
                }
            }
        }
    }
}

TEST_F(PaletteSample, ChoosesAsManyColorsFromThePictureAsItSays) {
    load("palette");
    addInstance();
    set("dither", kNone);
    const Picture input = Ramps(96, 64, 1);
    for (const std::uint32_t bitDepth : {8u, 16u, 32u}) {
        for (std::int32_t palette = 2; palette < kAllColors; ++palette) {
            set("palette", palette);
            const std::size_t count = ColorsOf(render(input, bitDepth)).size();
            EXPECT_LE(count, std::size_t{1} << (palette + 1));
            EXPECT_GT(count, std::size_t{1} << palette);
        }
        set("palette", kAllColors);
        EXPECT_TRUE(SamePicture(input, render(input, bitDepth), 1e-4f));
    }
}

// Half of all alphas is a power of two, so that colors survive the weighing exactly.
TEST_F(PaletteSample, ChoosesColorsWithoutRegardToAlphaAndKeepsIt) {
    load("palette");
    addInstance();
    for (const std::int32_t palette : {3, kSixteenPcColors}) {
        set("palette", palette);
        for (const std::int32_t dither : {kNone, kFloydSteinberg, kPattern4}) {
            set("dither", dither);
            const Picture opaque = render(Ramps(40, 30, 1), 32);
            Picture soft = render(Ramps(40, 30, 0.5f), 32);
            for (std::size_t i = 0; i < soft.samples.size(); i += 4) {
                EXPECT_EQ(soft.samples[i], 0.5f);
                soft.samples[i] = 1;
            }
            EXPECT_TRUE(SamePicture(opaque, soft)) << palette << " " << dither;
        }
    }
}

TEST_F(PaletteSample, DrawsBlocksOfThePicturesMeans) {
    load("palette");
    addInstance();
    set("palette", kAllColors);
    const Picture input = Ramps(10, 7, 1);
    for (const std::uint32_t block : {1u, 2u, 4u, 64u}) {
        set("pixelSize", static_cast<float>(block));
        const Picture output = render(input, 32);
        for (std::uint32_t y = 0; y < input.height; ++y)
            for (std::uint32_t x = 0; x < input.width; ++x) {
                float sums[4] = {}, count = 0;
                for (std::uint32_t row = y / block * block; row < std::min(input.height, (y / block + 1) * block);
                     ++row)
                    for (std::uint32_t at = x / block * block; at < std::min(input.width, (x / block + 1) * block);
                         ++at) {
                        for (int channel = 0; channel < 4; ++channel) sums[channel] += input.at(at, row)[channel];
                        ++count;
                    }
                for (int channel = 0; channel < 4; ++channel)
                    EXPECT_NEAR(output.at(x, y)[channel], sums[channel] / count, 1e-5f) << x << " " << y;
            }
    }
}

TEST_F(EchoSample, ShowsThePictureAsItIsWhereNoTrailCanBe) {
    load("echo");
    addInstance();
    for (const std::uint32_t bitDepth : {8u, 16u, 32u}) {
        const Picture soft = Ramps(12, 9, 0.6f);
        EXPECT_TRUE(SamePicture(soft, render(soft, bitDepth, 1), bitDepth == 8 ? 1e-6f : 4e-5f));
    }
}

// A bright picture at the first moment, black ones at all others; a half-life is a quarter of a second.
TEST_F(EchoSample, FadesByTimeAndStartsAfreshWhereTheOrderBreaks) {
    struct Row {
        std::vector<double> moments;
        float left;  // of the first picture, in the last
    };
    const Row rows[] = {
        {{0, 0.25}, 0.5f}, {{1, 1.25, 1.5}, 0.25f}, {{1, 1.125, 1.25, 1.5}, 0.25f}, {{1, 1.25, 1.25}, 0.5f},
        {{1, 1}, 0},       {{1, 0.9}, 0},           {{1, 1.25, 1.125}, 0},          {{1, 1.75}, 0},
        {{-0.25, 0}, 0},
    };
    load("echo");
    set("halfLife", 0.25f);
    for (const Row& row : rows) {
        SequenceHandle* instance = addInstance();
        set("halfLife", 0.25f);
        set("zoom", 100.0f);
        for (const std::uint32_t bitDepth : {8u, 32u}) {
            const Picture bright = Ramps(12, 9, 1);
            Picture last;
            for (const double moment : row.moments)
                last = render(moment == row.moments[0] && last.samples.empty() ? bright : Flat(12, 9, {1, 0, 0, 0}),
                              bitDepth, moment);
            Picture expected = bright;
            for (std::size_t i = 0; i < expected.samples.size(); ++i)
                if (i % 4 != 0) expected.samples[i] *= row.left;
            EXPECT_TRUE(SamePicture(expected, last, bitDepth == 8 ? 0.6f / 255 : 1e-5f))
                << ::testing::PrintToString(row.moments);
        }
        removeInstance(instance);
    }
}

TEST_F(EchoSample, StartsAfreshAtAnotherSize) {
    load("echo");
    addInstance();
    render(Ramps(12, 9, 1), 8, 1);
    const Picture black = Flat(20, 9, {1, 0, 0, 0});
    EXPECT_TRUE(SamePicture(black, render(black, 8, 1.04)));
}

TEST_F(EchoSample, ForgetsWhatIsNoNumber) {
    load("echo");
    addInstance();
    for (const float strange : {std::nanf(""), INFINITY}) {
        Picture input = Ramps(6, 5, 1);
        input.samples[4 * 14 + 1] = strange;
        render(input, 32, 1);
        const Picture left = render(Flat(6, 5, {1, 0, 0, 0}), 32, 1.25);
        for (const float sample : left.samples) EXPECT_TRUE(std::isfinite(sample));
    }
}

TEST_F(EchoSample, KeepsTheTrailsOfFourInstancesApart) {
    load("echo");
    const float white[4] = {1, 1, 1, 1};
    std::vector<SequenceHandle*> all;
    for (int i = 0; i < 5; ++i) all.push_back(addInstance());
    for (std::size_t i = 0; i < all.size(); ++i) {
        engine.selectSequence(all[i]);
        set("halfLife", 0.25f);
        set("zoom", 100.0f);
        Picture own = Flat(6, 5, white);
        for (std::size_t at = 1; at < own.samples.size(); at += 4) own.samples[at] = static_cast<float>(i) / 5.0f;
        render(own, 32, 1);
    }
    for (std::size_t i = all.size(); i-- > 0;) {
        engine.selectSequence(all[i]);
        const Picture left = render(Flat(6, 5, {1, 0, 0, 0}), 32, 1.25);
        // The first instance's memory has made room for the fifth's.
        EXPECT_NEAR(left.at(3, 2)[1], static_cast<float>(i) / 10.0f, 1e-5f) << i;
        EXPECT_NEAR(left.at(3, 2)[2], i == 0 ? 0.0f : 0.5f, 1e-5f) << i;
    }
}

}  // namespace quillon::test
