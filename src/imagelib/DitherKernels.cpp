#include "imagelib/DitherKernels.h"

#include <iterator>

namespace quillon::ImageLib {

namespace {

// Jarvis, Stucki, Burkes and the two larger Sierras were published five cells wide. Here their flat list of cells is
// cut every four and the rest falls away: their weights sum to less than 1 and lean to the left. That is settled.
// clang-format off
constexpr DitherKernel kKernels[] = {
    /* 2: Floyd-Steinberg */    {3, 2, 16, {{0, 1, 7},
                                            {3, 5, 1}}},
    /* 3: Jarvis and others */  {4, 3, 48, {{0, 0, 1, 7},
                                            {5, 3, 5, 7},
                                            {5, 3, 1, 3}}},
    /* 4: Stucki */             {4, 3, 42, {{0, 0, 1, 8},
                                            {4, 2, 4, 8},
                                            {4, 2, 1, 2}}},
    /* 5: Atkinson */           {4, 3,  8, {{0, 1, 1, 1},
                                            {1, 1, 1, 0},
                                            {0, 1, 0, 0}}},
    /* 6: Burkes */             {4, 2, 32, {{0, 0, 1, 8},
                                            {4, 2, 4, 8}}},
    /* 7: Sierra */             {4, 3, 32, {{0, 0, 1, 5},
                                            {3, 2, 4, 5},
                                            {4, 2, 0, 2}}},
    /* 8: two-row Sierra */     {4, 2, 16, {{0, 0, 1, 4},
                                            {3, 1, 2, 3}}},
    /* 9: Sierra Lite */        {3, 2,  4, {{0, 1, 2},
                                            {1, 1, 0}}},
    /* 10: Stevenson-Arce */    {7, 4, 200, {{ 0,  0,  0,  1,  0, 32,  0},
                                             {12,  0, 26,  0, 30,  0, 16},
                                             { 0, 12,  0, 26,  0, 12,  0},
                                             { 5,  0, 12,  0, 12,  0,  5}}},
};
// clang-format on
constexpr std::int64_t kFirstKernel = 2;

}  // namespace

const DitherKernel* FindDitherKernel(std::int64_t ditherIndex) {
    if (ditherIndex < kFirstKernel || ditherIndex >= kFirstKernel + std::ssize(kKernels)) return nullptr;
    return &kKernels[ditherIndex - kFirstKernel];
}

}  // namespace quillon::ImageLib
