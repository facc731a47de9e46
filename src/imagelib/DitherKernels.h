#pragma once

#include <cstdint>

namespace quillon::ImageLib {

// Where the error of a pixel goes: cell (row, column) takes its weight of it, `column - origin` places further along
// the scan and `row` rows down. Weights of 0 take nothing; those of row 0 up to the origin are never applied.
struct DitherKernel {
    static constexpr int kMaxWidth = 7;
    static constexpr int kMaxHeight = 4;

    int width;
    int height;
    int divisor;
    int cells[kMaxHeight][kMaxWidth];  // over the divisor; the origin is the first cell of row 0 that is not 0

    // The column of the pixel itself in row 0.
    constexpr int origin() const {
        int column = 0;
        while (cells[0][column] == 0) ++column;
        return column;
    }
    // The share of the error that a cell takes, 0 to 1.
    constexpr float weight(int row, int column) const {
        return static_cast<float>(cells[row][column]) / static_cast<float>(divisor);
    }
};

// The kernel of number `ditherIndex`, 2 to 10; null for any other.
const DitherKernel* FindDitherKernel(std::int64_t ditherIndex);

}  // namespace quillon::ImageLib
