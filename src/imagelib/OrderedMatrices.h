#pragma once

#include <cstdint>

namespace quillon::ImageLib {

// A square of thresholds that repeats over the picture; its size is a power of two.
struct OrderedMatrix {
    static constexpr int kMaxSize = 8;

    int size;
    int divisor;
    std::uint8_t cells[kMaxSize][kMaxSize];  // over the divisor

    // What is added to a pixel, before the amplitude.
    constexpr float cell(std::uint32_t x, std::uint32_t y) const {
        const std::uint32_t mask = static_cast<std::uint32_t>(size) - 1;
        return static_cast<float>(cells[y & mask][x & mask]) / static_cast<float>(divisor);
    }
};

// The matrix of number `ditherIndex`, 12 to 14; null for any other.
const OrderedMatrix* FindOrderedMatrix(std::int64_t ditherIndex);

}  // namespace quillon::ImageLib
