// Changed controls, and the panel's names and enabled states.

#include <string>

#include "engine/AEQuillon2.h"
#include "engine/EngineLock.h"
#include "shell/HostVersion.h"
#include "shell/ParameterMaps.h"
#include "shell/ParameterTransfer.h"
#include "shell/Selectors.h"
#include "shell/SequenceData.h"

namespace quillon {

void refreshParamUI(PF_InData& in, PF_OutData& out, PF_ParamDef** params) {
    IPlugin& engine = AEQuillon2::instance();
    ParameterMaps& maps = ParameterMaps::instance();
    {
        const SuiteHold suite(in.pica_basicP, suites::kParamUtils, /*lowestVersion=*/1);
        PF_Err error = PF_Err_NONE;
        const std::uint32_t count = engine.parameterCount();
        for (std::uint32_t i = 0; i < count; ++i) {
            const Parameter& parameter = *engine.parameterInfo(i);
            if (parameter.flags & ParameterFlag::hidden) continue;
            // A control that was declared after the registration enters the map with 0 here.
            const std::uint32_t hostIndex = maps.hostIndexOfParam[i];
            if (hostIndex == 0) continue;
            // A kind that the host has nothing for lets our indices run ahead of the host's list.
            const bool isListed = in.num_params <= 0 || hostIndex < static_cast<std::uint32_t>(in.num_params);
            if (params && isListed) {
                PF_ParamDef copy = *params[hostIndex];
                if (parameter.flags & ParameterFlag::disabled)
                    copy.ui_flags |= PF_PUI_DISABLED;
                else
                    copy.ui_flags &= ~PF_PUI_DISABLED;
                const std::string label = parameter.label.substr(0, PF_MAX_EFFECT_PARAM_NAME_LEN);
                in.utils->ansi.sprintf(copy.PF_DEF_NAME, "%s", label.c_str());
                if (suite && error == PF_Err_NONE)
                    error = suite->PF_UpdateParamUI(in.effect_ref, static_cast<PF_ParamIndex>(hostIndex), &copy);
            }
            maps.paramOfHostIndex[hostIndex] = i;
            maps.hostIndexOfParam[i] = hostIndex;
        }
    }
    out.out_flags |= PF_OutFlag_REFRESH_UI;
}

PF_Err UpdateParamsUI(PF_InData& in, PF_OutData& out, PF_ParamDef** params) {
    SequenceData* block = BlockOf(in.sequence_data);
    if (!block) return PF_Err_NONE;
    IPlugin& engine = AEQuillon2::instance();
    SuiteCache cache(in.pica_basicP);
    engine.selectSequence(block->handle);
    engine.setContextExtent(block->compWidth, block->compHeight, block->compAspect);
    readAllParameters(in, /*withLayers=*/false, cache);
    engine.updateUIFlags();
    refreshParamUI(in, out, params);
    return PF_Err_NONE;
}

PF_Err UserChangedParam(PF_InData& in, PF_OutData& out, PF_ParamDef** params, const PF_UserChangedParamExtra& extra) {
    SuiteCache cache(in.pica_basicP);
    SequenceData* block = BlockOf(in.sequence_data);
    if (!block) return PF_Err_NONE;
    IPlugin& engine = AEQuillon2::instance();
    engine.selectSequence(block->handle);
    const PF_ParamIndex index = extra.param_index;
    if (index == 0) return PF_Err_NONE;

    PF_ParamDef& def = *params[index];
    if (def.param_type != PF_Param_BUTTON) {
        transferParameter(in, def, static_cast<std::uint32_t>(index), cache);
        return PF_Err_NONE;
    }
    const EngineLock lock(engine);
    if (!lock.isHeld()) return PF_Err_INTERNAL_STRUCT_DAMAGED;
    if (block->needsRestart) {
        engine.restartScript();
        block->recordFrameSize = 1;
        refreshParamUI(in, out, params);
        if (!IsAfterEffectsFrom13_9(in)) out.out_flags |= PF_OutFlag_FORCE_RERENDER;
    }
    return PF_Err_NONE;
}

}  // namespace quillon
