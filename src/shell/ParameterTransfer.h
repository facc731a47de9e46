#pragma once

#include <cstdint>

#include "hostapi/HostApi.h"
#include "shell/Suites.h"

namespace quillon {

// Host values and engine values meet here. All work on the selected instance.

// Carries one host value into the instance. Nothing before the first refreshParamUI of the process: until then no
// host index stands for a control. A layer's pixels are uploaded under a GL lock of its own.
void transferParameter(PF_InData& in, PF_ParamDef& def, std::uint32_t hostIndex, SuiteCache& cache);

// Checks out the value of every control at the current time, hidden ones left out, and carries it over; without
// layers also LAYER, TEXTURE and PATH are left out. After a checkout that fails no more are made, and the values held
// from before stay; what was begun is checked in for each.
void readAllParameters(PF_InData& in, bool withLayers, SuiteCache& cache);

// Fills the maps between the two orders and asks for a refresh of the panel. With `params`, also brings names and
// enabled states to the host, as far as it takes them.
void refreshParamUI(PF_InData& in, PF_OutData& out, PF_ParamDef** params);

}  // namespace quillon
