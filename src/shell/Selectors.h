#pragma once

#include "hostapi/HostApi.h"

namespace quillon {

// The handlers of the selectors, each with the records that it may see. They run one at a time under the entry gate.
// A thrown int is a host error code and reaches the host as it is; anything else thrown becomes 515.

// For the process: the effect's words about itself, its flags and global data, its controls.
PF_Err About(PF_InData& in, PF_OutData& out);
PF_Err GlobalSetup(PF_InData& in, PF_OutData& out);
PF_Err registerParameters(PF_InData& in, PF_OutData& out);

// For an instance: a new block, a block brought back from a file or another process, its flat form, its end.
PF_Err SequenceSetup(PF_InData& in, PF_OutData& out);
PF_Err SequenceResetup(PF_InData& in, PF_OutData& out);
PF_Err SequenceFlatten(PF_InData& in, PF_OutData& out);
PF_Err SequenceSetdown(PF_InData& in);

// For a frame: the size and the picture on the classic route, then the same on the smart route.
PF_Err FrameSetup(PF_InData& in, PF_OutData& out, PF_ParamDef** params);
PF_Err FrameSetdown(PF_InData& in, PF_OutData* out);
PF_Err Render(PF_InData& in, PF_OutData& out, PF_ParamDef** params, PF_LayerDef& output);
PF_Err SmartPreRender(PF_InData& in, PF_PreRenderExtra& extra);
PF_Err SmartRender(PF_InData& in, PF_OutData& out, PF_ParamDef** params, PF_SmartRenderExtra& extra);

// For the panel: a control that the user has changed (null without its record), names and states of all controls.
PF_Err UserChangedParam(PF_InData& in, PF_OutData& out, PF_ParamDef** params, const PF_UserChangedParamExtra* extra);
PF_Err UpdateParamsUI(PF_InData& in, PF_OutData& out, PF_ParamDef** params);
// Of a control that the event gate lets through: see EventGate.h.
PF_Err ColorWheelEvent(PF_InData& in, PF_OutData& out, PF_ParamDef** params, PF_EventExtra& extra);

}  // namespace quillon
