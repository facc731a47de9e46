#pragma once

#include "hostapi/HostApi.h"
#include "shell/SequenceData.h"
#include "shell/Suites.h"

namespace quillon {

// Asks the host for the extent and the pixel aspect of the composition or timeline that holds the effect, and stores
// them in the block's three comp fields. What the host does not tell stays as it was. Under After Effects a missing
// suite throws the int 516.
void queryCompInfo(PF_InData& in, SuiteCache& cache, SequenceData& block);

}  // namespace quillon
