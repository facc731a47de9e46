// The host's panel of controls: the names and enabled states that it shows, and the controls that its user changes.

#include <string>

#include "shell/EngineTurn.h"
#include "shell/HostVersion.h"
#include "shell/ParameterMaps.h"
#include "shell/ParameterTransfer.h"
#include "shell/Selectors.h"

namespace quillon {

namespace {

struct PanelControl {
    std::uint32_t hostIndex;
    bool isDisabled;
    std::string label;
};

// What the panel shows of an instance. Fills the maps on the way: from here on values pass from host to script.
std::vector<PanelControl> ReadPanel(PF_Handle sequenceData) {
    ParameterMaps& maps = ParameterMaps::instance();
    const EngineTurn turn(sequenceData);
    std::vector<PanelControl> panel;
    const std::uint32_t count = turn->parameterCount();
    for (std::uint32_t i = 0; i < count; ++i) {
        const Parameter& parameter = *turn->parameterInfo(i);
        if (parameter.flags & ParameterFlag::kHidden) continue;
        // A control that was declared after the registration enters the map with 0 here.
        const std::uint32_t hostIndex = maps.hostIndexOfParam[i];
        if (hostIndex == 0) continue;
        maps.paramOfHostIndex[hostIndex] = i;
        panel.push_back({hostIndex, (parameter.flags & ParameterFlag::kDisabled) != 0,
                         parameter.label.substr(0, PF_MAX_EFFECT_PARAM_NAME_LEN)});
    }
    return panel;
}

// A copy of the host's control with the script's name and state.
PF_ParamDef Edited(PF_InData& in, const PF_ParamDef& def, const PanelControl& control) {
    PF_ParamDef copy = def;
    if (control.isDisabled)
        copy.ui_flags |= PF_PUI_DISABLED;
    else
        copy.ui_flags &= ~PF_PUI_DISABLED;
    in.utils->ansi.sprintf(copy.PF_DEF_NAME, "%s", control.label.c_str());
    return copy;
}

void SendPanel(PF_InData& in, PF_ParamDef** params, const std::vector<PanelControl>& panel,
               const SuiteHold<PF_ParamUtilsSuite3>& suite) {
    PF_Err error = PF_Err_NONE;
    for (const PanelControl& control : panel) {
        const PF_ParamDef* const def = params[control.hostIndex];
        if (!def) continue;
        const PF_ParamDef copy = Edited(in, *def, control);
        if (suite && error == PF_Err_NONE)
            error = suite->PF_UpdateParamUI(in.effect_ref, static_cast<PF_ParamIndex>(control.hostIndex), &copy);
    }
}

}  // namespace

void refreshParamUI(PF_InData& in, PF_OutData& out, PF_ParamDef** params, PF_Handle sequenceData) {
    const std::vector<PanelControl> panel = ReadPanel(sequenceData);
    {
        const SuiteHold suite(in.pica_basicP, suites::kParamUtils, /*lowestVersion=*/1);
        if (params) SendPanel(in, params, panel, suite);
    }
    out.out_flags |= PF_OutFlag_REFRESH_UI;
}

PF_Err UpdateParamsUI(PF_InData& in, PF_OutData& out, PF_ParamDef** params) {
    if (!BlockOf(in.sequence_data)) return PF_Err_NONE;
    SuiteCache cache(in.pica_basicP);
    const ParameterSweep sweep = readAllParameters(in, /*withLayers=*/false, cache);
    {
        const EngineTurn turn(in.sequence_data);
        turn.setComposition();
        sweep.apply(turn);
        turn->updateUIFlags();
    }
    refreshParamUI(in, out, params, in.sequence_data);
    return PF_Err_NONE;
}

PF_Err UserChangedParam(PF_InData& in, PF_OutData& out, PF_ParamDef** params, const PF_UserChangedParamExtra* extra) {
    SuiteCache cache(in.pica_basicP);
    if (!BlockOf(in.sequence_data)) return PF_Err_NONE;
    const PF_ParamIndex index = extra ? extra->param_index : 0;
    PF_ParamDef* const def = params && index > 0 ? params[index] : nullptr;
    SelectInstance(in.sequence_data);
    if (!def) return PF_Err_NONE;
    if (def->param_type != PF_Param_BUTTON) {
        transferParameter(in, *def, static_cast<std::uint32_t>(index), cache);
        return PF_Err_NONE;
    }
    {
        const EngineTurn turn(in.sequence_data, GLUse::locked);
        if (!turn.hasGL()) return PF_Err_INTERNAL_STRUCT_DAMAGED;
        if (!turn.block() || !turn.block()->needsRestart) return PF_Err_NONE;
        Instances::instance().scriptRestarts();
        turn->restartScript();
        turn.block()->recordFrameSize = 1;
    }
    // Gives this instance its new Sequence; the others get theirs at their next selector.
    refreshParamUI(in, out, params, in.sequence_data);
    if (!IsAfterEffectsFrom(in, 13, 9)) out.out_flags |= PF_OutFlag_FORCE_RERENDER;
    return PF_Err_NONE;
}

}  // namespace quillon
