#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace quillon::test {

// Channels A, R, G, B from 0 to 1, the top row first.
struct Picture {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<float> samples;

    const float* at(std::uint32_t x, std::uint32_t y) const { return &samples[(std::size_t{y} * width + x) * 4]; }
};

// Whether the pictures have one size and each channel of `actual` is within `tolerance` of the expected one. NaN is
// equal to nothing. A failure says where the largest difference is, and in which folder it has left expected.png,
// actual.png and difference.png: 8 bits, opaque, the difference times 16.
::testing::AssertionResult SamePicture(const Picture& expected, const Picture& actual, float tolerance = 0);

// The same for the picture of this name in tests/pictures, 8 bits a channel; channels are cut to 0 to 1 before. Where
// the environment has QUILLON_RENEW_PICTURES, that file is written from `actual`, and the test fails.
::testing::AssertionResult LooksAs(const std::string& name, Picture actual, float tolerance);

}  // namespace quillon::test
