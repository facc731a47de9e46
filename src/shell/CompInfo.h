#pragma once

#include <cstdint>

#include "hostapi/HostApi.h"
#include "shell/Suites.h"

namespace quillon {

// The composition or timeline that holds the effect: its extent in pixels and its pixel aspect.
struct CompInfo {
    std::uint32_t width;
    std::uint32_t height;
    float pixelAspect;
};

// Asks the host. What the host does not say stays as it was. Under After Effects a missing suite throws the int 516.
void queryCompInfo(PF_InData& in, SuiteCache& cache, CompInfo& info);

}  // namespace quillon
