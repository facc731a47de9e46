#include "imagelib/OrderedMatrices.h"

#include <iterator>

namespace quillon::ImageLib {

namespace {

// clang-format off
constexpr OrderedMatrix kMatrices[] = {
    {2, 4, {{1, 3},
            {4, 2}}},
    {4, 17, {{ 1,  9,  3, 11},
             {13,  5, 15,  7},
             { 4, 12,  2, 10},
             {16,  8, 14,  6}}},
    {8, 65, {{ 1, 33,  9, 41,  3, 35, 11, 43},
             {49, 17, 57, 25, 51, 19, 59, 27},
             {13, 45,  5, 37, 15, 47,  7, 39},
             {61, 29, 53, 21, 63, 31, 55, 23},
             { 4, 36, 12, 44,  2, 34, 10, 42},
             {52, 20, 60, 28, 50, 18, 58, 26},
             {16, 48,  8, 40, 14, 46,  6, 38},
             {64, 32, 56, 24, 62, 30, 54, 22}}},
};
// clang-format on
constexpr std::int64_t kFirstMatrix = 12;

}  // namespace

const OrderedMatrix* FindOrderedMatrix(std::int64_t ditherIndex) {
    if (ditherIndex < kFirstMatrix || ditherIndex >= kFirstMatrix + std::ssize(kMatrices)) return nullptr;
    return &kMatrices[ditherIndex - kFirstMatrix];
}

}  // namespace quillon::ImageLib
