#include "imagelib/Pixels.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>

namespace quillon::ImageLib {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

TEST(Pixels, BytesAreScaledByTheConstantAndNotDivided) {
    EXPECT_EQ(std::bit_cast<std::uint32_t>(FloatFromChannel(std::uint8_t{255})), 0x3F800000u);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(FloatFromChannel(std::uint8_t{128})), 0x3F008081u);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(FloatFromChannel(std::uint8_t{1})), 0x3B808081u);
}

struct ByteCase {
    float number;
    int expected;
};

TEST(Pixels, FloatsRoundToBytesWithTiesToEven) {
    constexpr ByteCase kCases[] = {
        {0.5f / 255, 0}, {1.5f / 255, 2}, {2.5f / 255, 2},  {254.5f / 255, 254}, {254.6f / 255, 255}, {-0.1f, 0},
        {1.5f, 255},     {-kInfinity, 0}, {kInfinity, 255}, {1e30f, 255},        {kNaN, 0},
    };
    for (const ByteCase& row : kCases) EXPECT_EQ(Channel8FromFloat(row.number), row.expected) << row.number;
}

TEST(Pixels, WordsLoseFullScaleAndNothingElse) {
    for (int value = 0; value <= 32768; ++value) {
        const float number = FloatFromChannel(static_cast<std::uint16_t>(value));
        ASSERT_EQ(number, std::ldexp(static_cast<float>(value), -15));
        ASSERT_EQ(Channel15FromFloat(number), value == 32768 ? 32767 : value);
    }
}

TEST(Pixels, FloatsAreCutToSignedWords) {
    constexpr ByteCase kCases[] = {
        {0.99999f, 32767}, {1.9f / 32768, 1},  {-1.9f / 32768, 0xFFFF}, {2.0f, 32767}, {-1.0f, 0x8000},
        {-5.0f, 0x8000},   {kInfinity, 32767}, {-kInfinity, 0x8000},    {kNaN, 0},
    };
    for (const ByteCase& row : kCases) EXPECT_EQ(Channel15FromFloat(row.number), row.expected) << row.number;
}

}  // namespace
}  // namespace quillon::ImageLib
