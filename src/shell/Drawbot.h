#pragma once

#include "hostapi/HostApi.h"

namespace quillon {

// The four suites of the host's drawing library, in the order in which they are acquired and released.
struct DrawbotSuites {
    const DRAWBOT_DrawbotSuite1* draw;
    const DRAWBOT_SupplierSuite1* supplier;
    const DRAWBOT_SurfaceSuite2* surface;
    const DRAWBOT_PathSuite1* path;
};

// Fills the record up to the first suite that cannot be had. 0; 516 with a message to the user then; 514 with a message
// for a null record.
PF_Err AEFX_AcquireDrawbotSuites(PF_InData& in, PF_OutData& out, DrawbotSuites* suites);

// Releases what the record holds, in the same order.
PF_Err AEFX_ReleaseDrawbotSuites(PF_InData& in, PF_OutData& out, DrawbotSuites& suites);

}  // namespace quillon
