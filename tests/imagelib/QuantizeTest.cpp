#include "imagelib/Quantize.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "imagelib/Surface.h"
#include "reference/PlainQuantize.h"
#include "support/EndOfProcess.h"
#include "support/Pixels.h"

namespace quillon::test {
namespace {

enum class Kind { flat, ramp, noise, saturated, fewColors, oddAlphas, outOfRange, notANumber };
constexpr Kind kKinds[] = {Kind::flat,      Kind::ramp,      Kind::noise,      Kind::saturated,
                           Kind::fewColors, Kind::oddAlphas, Kind::outOfRange, Kind::notANumber};

struct Extent {
    std::uint32_t width;
    std::uint32_t height;
};

// One channel of a picture of a kind; lane 0 is alpha. A pixel holds either infinities or NaN, so that no result
// depends on which of two NaN an addition gives.
float Channel(Kind kind, Extent size, std::uint32_t x, std::uint32_t y, int lane, std::mt19937& random) {
    const auto number = [&] { return static_cast<float>(random() >> 8) / static_cast<float>(1 << 24); };
    const std::uint32_t place = (x * 7 + y * 5) % 16;
    switch (kind) {
        case Kind::flat:
            return lane == 0 ? 1.0f : 0.3f + 0.2f * static_cast<float>(lane);
        case Kind::ramp:
            return lane == 0 ? 1.0f
                             : static_cast<float>(lane == 2 ? y : x) / static_cast<float>(size.width + size.height);
        case Kind::noise:
            return lane == 0 ? 1.0f : number();
        case Kind::saturated:
            return lane == 0 ? 1.0f : static_cast<float>((x / 9 + y / 5) >> (lane - 1) & 1);
        case Kind::fewColors:
            return lane == 0 ? (place < 3 ? 0.1f : 1.0f) : static_cast<float>(place % 3) * 0.1f;
        case Kind::oddAlphas:
            return number();
        case Kind::outOfRange:
            return lane == 0 && x < 3 ? 1.0f : (number() - 0.5f) * std::exp2(number() * 24 - 8);
        case Kind::notANumber:
            if (place == 3 && lane == static_cast<int>(y % 4)) return std::numeric_limits<float>::quiet_NaN();
            if (place == 9 && lane == 2) return std::numeric_limits<float>::infinity();
            return lane == 0 ? 1.0f : number();
    }
    return 0;
}

Bytes MakePicture(Kind kind, Extent size, std::uint32_t bits) {
    std::mt19937 random(static_cast<std::uint32_t>(kind) + 1);
    const std::size_t channelBytes = bits / 8;
    Bytes bytes(std::size_t{size.width} * size.height * 4 * channelBytes);
    std::byte* to = bytes.data();
    for (std::uint32_t y = 0; y < size.height; ++y)
        for (std::uint32_t x = 0; x < size.width; ++x)
            for (int lane = 0; lane < 4; ++lane, to += channelBytes) {
                const float value = Channel(kind, size, x, y, lane, random);
                const auto byte = ImageLib::Channel8FromFloat(value);
                // Words up to 65535, as a layer's texture holds them.
                const auto word = static_cast<std::uint16_t>(
                    value > 0 ? std::min(value * (kind == Kind::outOfRange ? 65535.0f : 32768.0f), 65535.0f) : 0.0f);
                const void* from = bits == 8 ? static_cast<const void*>(&byte) : bits == 16 ? &word : nullptr;
                std::memcpy(to, from ? from : &value, channelBytes);
            }
    return bytes;
}

// Rows are 3 bytes further apart than they need to be, so nothing is aligned.
Bytes Quantized(const reference::PlainQuantize& settings, const Bytes& input) {
    if (input.empty()) {
        Surface surface;
        surface.init(settings.width, settings.height, settings.bitDepth, true);
        SurfaceQuantize(surface, settings.mode, settings.dither, settings.value, settings.grayscale,
                        settings.serpentine);
        return input;  // and the process goes on, though there are no pixels
    }
    const std::size_t tight = input.size() / settings.height;
    Surface surface;
    surface.init(settings.width, settings.height, settings.bitDepth, true);
    surface.rowBytes = tight + 3;
    surface.pixels.resize(surface.rowBytes * settings.height, std::byte{0xA5});
    for (std::uint32_t y = 0; y < settings.height; ++y)
        std::memcpy(surface.pixels.data() + y * surface.rowBytes, input.data() + y * tight, tight);
    SurfaceQuantize(surface, settings.mode, settings.dither, settings.value, settings.grayscale, settings.serpentine);
    Bytes output(input.size());
    for (std::uint32_t y = 0; y < settings.height; ++y) {
        std::memcpy(output.data() + y * tight, surface.pixels.data() + y * surface.rowBytes, tight);
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_EQ(surface.pixels[y * surface.rowBytes + tight + i], std::byte{0xA5});
    }
    return output;
}

// False, with a failure, when the two differ.
bool EqualsThePlainRules(const reference::PlainQuantize& settings, Kind kind) {
    const Bytes input = MakePicture(kind, {settings.width, settings.height}, settings.bitDepth);
    Bytes expected = input;
    settings.run(expected.data());
    const Bytes actual = Quantized(settings, input);
    if (actual == expected) return true;
    const std::size_t at =
        static_cast<std::size_t>(std::mismatch(actual.begin(), actual.end(), expected.begin()).first - actual.begin());
    ADD_FAILURE() << settings.width << "x" << settings.height << " of kind " << static_cast<int>(kind) << " at "
                  << settings.bitDepth << " bits: mode " << settings.mode << ", dither " << settings.dither
                  << ", value " << settings.value << (settings.grayscale ? ", gray" : "")
                  << (settings.serpentine ? ", serpentine" : "") << " differs first in byte " << at;
    return false;
}

class QuantizeDepth : public ::testing::TestWithParam<std::uint32_t> {};

TEST_P(QuantizeDepth, EqualsThePlainRulesInEveryCombination) {
    for (const Kind kind : kKinds)
        for (std::int32_t mode = -1; mode <= 23; ++mode)
            for (std::int32_t dither = -1; dither <= 17; ++dither)
                for (const bool grayscale : {false, true})
                    for (const bool serpentine : {false, true})
                        if (!EqualsThePlainRules({21, 18, GetParam(), mode, dither, 0.4f, grayscale, serpentine}, kind))
                            return;
}

// The sizes, and for each all combinations of the rest.
struct Sweep {
    std::vector<Extent> sizes;
    std::vector<std::int32_t> modes, dithers;
    std::vector<float> values;
    std::vector<Kind> kinds;
};

const std::vector<Sweep> kSweeps = {
    // Every size.
    {{{1, 1}, {1, 40}, {40, 1}, {0, 3}, {3, 0}, {2, 2}, {3, 17}, {9, 16}, {41, 35}, {130, 19}},
     {1, 3, 7, 14, 20},
     {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15},
     {0.7f},
     {Kind::noise, Kind::oddAlphas}},
    // Large enough for the finer cells of the palette search, and for errors that run far out of the color cube.
    {{{310, 120}},
     {5, 7, 11, 16},
     {1, 3, 6, 11, 15},
     {3.0f},
     {Kind::ramp, Kind::noise, Kind::saturated, Kind::outOfRange}},
    // As many pixels as the finest cells of the palette search take.
    {{{800, 640}}, {10}, {1, 15}, {0.5f}, {Kind::noise}},
    {{{800, 640}}, {6}, {3}, {0}, {Kind::ramp}},
    // Values decide the outcome at the limit itself, and may be anything.
    {{{17, 17}},
     {1, 4, 20},
     {1, 3, 13, 14, 15, std::numeric_limits<std::int32_t>::min()},
     {0.0f, -1.0f, 1.0f, 1e30f, std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()},
     {Kind::flat, Kind::noise}},
};

TEST_P(QuantizeDepth, EqualsThePlainRulesAtEverySizeAndValue) {
    for (const Sweep& sweep : kSweeps)
        for (const Extent& size : sweep.sizes)
            for (const std::int32_t mode : sweep.modes)
                for (const std::int32_t dither : sweep.dithers)
                    for (const float value : sweep.values)
                        for (const Kind kind : sweep.kinds)
                            for (const bool serpentine : {false, true}) {
                                if (serpentine && size.width > 300) continue;
                                if (!EqualsThePlainRules(
                                        {size.width, size.height, GetParam(), mode, dither, value, false, serpentine},
                                        kind))
                                    return;
                            }
}

INSTANTIATE_TEST_SUITE_P(Bits, QuantizeDepth, ::testing::Values(8u, 16u, 32u),
                         [](const auto& depth) { return std::to_string(depth.param); });

// Worked out by hand: what the plain rules and the fast ones might both get wrong.
Bytes Grays(std::initializer_list<int> values) {
    Bytes bytes;
    for (const int value : values) {
        bytes.push_back(std::byte{77});
        bytes.insert(bytes.end(), 3, static_cast<std::byte>(value));
    }
    return bytes;
}

TEST(Quantize, GivesWhatIsWorkedOutByHand) {
    struct Case {
        const char* name;
        reference::PlainQuantize settings;
        Bytes input;
        Bytes expected;
    };
    const Case kCases[] = {
        {"threshold is strict",
         {3, 1, 8, 1, 1, 128 * (1 / 255.0f), false, false},
         Grays({127, 128, 129}),
         Grays({0, 0, 255})},
        // 100 - 0 gives 7/16 of 100 to the next: 100 + 43.75 is above 128 and gives back -111.25 * 7/16.
        {"error runs on", {3, 1, 8, 1, 3, 0.5f, false, false}, Grays({100, 100, 190}), Grays({0, 255, 255})},
        // Row 0 runs to the right; in row 1 the errors go leftward, so its right pixel is decided first.
        {"serpentine", {2, 2, 8, 1, 3, 0.5f, false, true}, Grays({0, 0, 100, 100}), Grays({0, 0, 255, 0})},
        {"plain", {2, 2, 8, 1, 3, 0.5f, false, false}, Grays({0, 0, 100, 100}), Grays({0, 0, 0, 255})},
        {"8 and none", {1, 1, 8, 8, 1, 0, true, false}, Grays({93}), Grays({93})},
        {"no dither 0", {1, 1, 8, 9, 0, 0, false, false}, Grays({93}), Grays({93})},
        {"full scale at 16 bits is lost though nothing is reduced",
         {1, 1, 16, 9, 12, 0, false, false},
         BytesOf<std::uint16_t>({32768, 32768, 65534, 5}),
         BytesOf<std::uint16_t>({32767, 32767, 32767, 5})},
        // (77/255)^2 from the unfilled slot, (178/255)^2 and more from the filled one: dark and thin goes to zero.
        {"unfilled slots compete", {2, 1, 8, 2, 1, 0, false, false}, Grays({10, 10}), Grays({0, 0})},
    };
    for (const Case& row : kCases) EXPECT_EQ(Quantized(row.settings, row.input), row.expected) << row.name;
}

TEST(Quantize, ChangesNoOtherDepthsAndNoShortPictures) {
    Surface surface;
    surface.pixels = Grays({100, 100, 100, 100});
    const Bytes input = surface.pixels;
    struct Case {
        std::uint32_t width, height, bits;
        std::uint64_t rowBytes;
    };
    constexpr Case kCases[] = {{2, 2, 15, 8},  {2, 2, 12, 8}, {3, 2, 8, 12},    {2, 3, 8, 8},
                               {2, 2, 8, ~7u}, {1, 2, 8, 16}, {1, 2, 8, ~7ull}, {2, 1, 32, 0}};
    for (const Case& row : kCases) {
        surface.init(row.width, row.height, row.bits, true);
        surface.rowBytes = row.rowBytes;
        SurfaceQuantize(surface, 1, 1, 0.5f, false, false);
        EXPECT_EQ(surface.pixels, input) << row.width << "x" << row.height << " at " << row.bits;
    }
}

TEST(QuantizeDeathTest, EndsTheProcessWhenThereAreNoPixels) {
    Surface surface;
    surface.init(2, 2, 8, true);
    EXPECT_EXIT(SurfaceQuantize(surface, 1, 1, 0.5f, false, false), EndedOnPurpose, "");
}

}  // namespace
}  // namespace quillon::test
