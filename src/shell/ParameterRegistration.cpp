// The script's list of controls becomes the host's.

#include <string>
#include <vector>

#include "engine/AEQuillon2.h"
#include "shell/HostCleanup.h"
#include "shell/HostControls.h"
#include "shell/HostVersion.h"
#include "shell/ParameterMaps.h"
#include "shell/Selectors.h"
#include "shell/Suites.h"

namespace quillon {

namespace {

PF_Err AddParameter(PF_InData& in, const HostControlType& row, const Parameter& parameter, A_long hostIndex) {
    PF_ParamDef def{};
    def.param_type = row.type;
    def.flags = row.flags;
    def.uu.id = hostIndex + row.idOffset;
    row.fill(def, parameter);
    if (row.isNamed) {
        const std::string label = parameter.label.substr(0, PF_MAX_EFFECT_PARAM_NAME_LEN);
        in.utils->ansi.strcpy(def.PF_DEF_NAME, label.c_str());
    }
    const PF_Err error = in.inter.add_param(in.effect_ref, -1, &def);
    return row.control == HostControl::path ? PF_Err{PF_Err_NONE} : error;
}

// The Effect Controls panel shows a button for options, which this effect has none of.
PF_Err BlankOptionsButton(PF_InData& in, PF_OutData& out) {
    const auto& key = suites::kEffectUI;
    const void* table = nullptr;
    PF_Err error = AcquireOrReport(in, out, key.name, key.version, &table);
    const AtEnd release([&] {
        if (table || !in.pica_basicP) ReleaseOrReport(in, out, key.name, key.version);
    });
    if (table) error = static_cast<const PF_EffectUISuite1*>(table)->PF_SetOptionsButtonName(in.effect_ref, " ");
    return error;
}

}  // namespace

PF_Err registerParameters(PF_InData& in, PF_OutData& out) {
    IPlugin& engine = AEQuillon2::instance();
    ParameterMaps& maps = ParameterMaps::instance();
    out.num_params = 1;
    // Copies, since the host can enter the effect again from add_param, and select another instance or end this one.
    std::vector<Parameter> parameters;
    const std::uint32_t count = engine.parameterCount();
    for (std::uint32_t i = 0; i < count; ++i) parameters.push_back(*engine.parameterInfo(i));
    for (std::uint32_t i = 0; i < count; ++i) {
        const Parameter& parameter = parameters[i];
        if (parameter.flags & ParameterFlag::kHidden) continue;
        const auto hostIndex = static_cast<std::uint32_t>(out.num_params);
        const ControlKind& kind = ControlKindOf(parameter.kind);
        const HostControlType* const row = FindHostControl(kind.hostControl);
        // A kind that the host has nothing for adds nothing, and takes a host index all the same.
        if (row) {
            if (row->keepsFirstIndex && maps.firstIndexOfKind[kind.number] == 0)
                maps.firstIndexOfKind[kind.number] = hostIndex;
            const PF_Err error = AddParameter(in, *row, parameter, out.num_params);
            if (error != PF_Err_NONE) return error;
        }
        maps.hostIndexOfParam[i] = hostIndex;
        ++out.num_params;
    }
    if (!IsPremiere(in)) {
        const PF_Err error = BlankOptionsButton(in, out);
        if (error != PF_Err_NONE) return error;
    }
    PF_CustomUIInfo info{};
    info.events = PF_CustomEFlag_EFFECT;
    return in.inter.register_ui(in.effect_ref, &info);
}

}  // namespace quillon
