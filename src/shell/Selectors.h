#pragma once

#include "hostapi/HostApi.h"

namespace quillon {

// The handlers of the selectors, each with the records that it may see. They run one at a time under the entry gate.
// A thrown int is a host error code and reaches the host as it is; anything else thrown becomes 515.

PF_Err about(PF_InData& in, PF_OutData& out);
PF_Err globalSetup(PF_InData& in, PF_OutData& out);
PF_Err registerParameters(PF_InData& in, PF_OutData& out);

PF_Err sequenceSetup(PF_InData& in, PF_OutData& out);
PF_Err sequenceResetup(PF_InData& in, PF_OutData& out);
PF_Err sequenceFlatten(PF_InData& in, PF_OutData& out);
PF_Err sequenceSetdown(PF_InData& in);

PF_Err frameSetup(PF_InData& in, PF_OutData& out, PF_ParamDef** params);
PF_Err frameSetdown(PF_InData& in, PF_OutData* out);
PF_Err render(PF_InData& in, PF_OutData& out, PF_ParamDef** params, PF_LayerDef& output);
PF_Err smartPreRender(PF_InData& in, PF_PreRenderExtra& extra);
PF_Err smartRender(PF_InData& in, PF_OutData& out, PF_ParamDef** params, PF_SmartRenderExtra& extra);

PF_Err userChangedParam(PF_InData& in, PF_OutData& out, PF_ParamDef** params, const PF_UserChangedParamExtra& extra);
PF_Err updateParamsUI(PF_InData& in, PF_OutData& out, PF_ParamDef** params);
// Of a control that the event gate lets through: see EventGate.h.
PF_Err colorWheelEvent(PF_InData& in, PF_OutData& out, PF_ParamDef** params, PF_EventExtra& extra);

}  // namespace quillon
