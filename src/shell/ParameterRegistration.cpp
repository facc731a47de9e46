// The script's list of controls becomes the host's.

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "engine/AEQuillon2.h"
#include "platform/Truncation.h"
#include "shell/HostCleanup.h"
#include "shell/HostVersion.h"
#include "shell/ParameterMaps.h"
#include "shell/Selectors.h"
#include "shell/Suites.h"

namespace quillon {

namespace {

constexpr A_long kSupervised = PF_ParamFlag_SUPERVISE;
constexpr A_long kSupervisedCollapsed = PF_ParamFlag_SUPERVISE | PF_ParamFlag_COLLAPSE_TWIRLY;

void FillFloat(PF_ParamDef& def, const Parameter& parameter) {
    PF_FloatSliderDef& slider = def.u.fs_d;
    slider.value = parameter.floatAt(0);
    slider.dephault = parameter.floatAt(0);
    slider.valid_min = slider.slider_min = parameter.min[0];
    slider.valid_max = slider.slider_max = parameter.max[0];
    slider.precision = static_cast<A_short>(parameter.flags >> ParameterFlag::kPrecisionShift);
    slider.curve_tolerance = 0.05f;
}

// The third axis reads the second float, whatever was declared for it. This is intended.
void FillPoint(PF_ParamDef& def, const Parameter& parameter) {
    PF_Point3DDef& point = def.u.point3d_d;
    point.x_value = point.x_dephault = parameter.floatAt(0);
    point.y_value = point.y_dephault = parameter.floatAt(1);
    point.z_value = point.z_dephault = parameter.floatAt(1);
}

// On the scale of 0 to 255, unlike the live values, which run from 0 to 1.
void FillColor(PF_ParamDef& def, const Parameter& parameter) {
    const auto byte = [&](int index) { return static_cast<A_u_char>(TruncateToInt32(parameter.floatAt(index))); };
    PF_ColorDef& color = def.u.cd;
    color.value.red = byte(0);
    color.value.green = byte(1);
    color.value.blue = byte(2);
    color.value.alpha = byte(3);
    color.dephault = color.value;
}

// A default is given as a fraction: the low 16 bits of the rounded number become the integer part of the host's.
PF_Fixed PointDefault(float number) {
    const double scaled = static_cast<double>(number * 65536.0f);
    const std::int32_t rounded = TruncateToInt32(scaled + (number < 0 ? -0.5 : 0.5));
    return static_cast<PF_Fixed>(static_cast<std::uint32_t>(rounded) << 16);
}

void FillPoint2D(PF_ParamDef& def, const Parameter& parameter) {
    PF_PointDef& point = def.u.td;
    point.x_value = point.x_dephault = PointDefault(parameter.floatAt(0));
    point.y_value = point.y_dephault = PointDefault(parameter.floatAt(1));
}

void FillPopup(PF_ParamDef& def, const Parameter& parameter, A_short value) {
    PF_PopupDef& popup = def.u.pd;
    popup.value = value;
    popup.dephault = value;
    popup.num_choices = static_cast<A_short>(parameter.choiceCount);
    popup.u.namesptr = parameter.choices.c_str();
}

void FillChosenPopup(PF_ParamDef& def, const Parameter& parameter) {
    FillPopup(def, parameter, static_cast<A_short>(parameter.wordValue()));
}

void FillTexturePopup(PF_ParamDef& def, const Parameter& parameter) {
    FillPopup(def, parameter, 0);
}

void FillBool(PF_ParamDef& def, const Parameter& parameter) {
    PF_CheckBoxDef& box = def.u.bd;
    box.value = parameter.intValue();
    box.dephault = static_cast<PF_Boolean>(parameter.wordValue());
    box.u.nameptr = "";
}

void FillAngle(PF_ParamDef& def, const Parameter& parameter) {
    PF_AngleDef& angle = def.u.ad;
    angle.value = angle.dephault = TruncateToInt32(static_cast<double>(parameter.floatAt(0)) * 65536.0);
}

void FillNothing(PF_ParamDef&, const Parameter&) {}

struct ControlType {
    HostControl control;
    A_long type;
    A_long flags;
    A_long idOffset;  // from the host index to uu.id
    void (*fill)(PF_ParamDef&, const Parameter&);
    bool isNamed = true;
    bool keepsFirstIndex = true;
};

constexpr ControlType kControlTypes[] = {
    {HostControl::floatSlider, PF_Param_FLOAT_SLIDER, kSupervisedCollapsed, 2, FillFloat},
    {HostControl::point3D, PF_Param_POINT_3D, 0, 2, FillPoint},
    {HostControl::color, PF_Param_COLOR, kSupervisedCollapsed, 2, FillColor},
    {HostControl::layer, PF_Param_LAYER, kSupervised, 2, FillNothing},
    {HostControl::point2D, PF_Param_POINT, kSupervisedCollapsed, 2, FillPoint2D},
    {HostControl::texturePopup, PF_Param_POPUP, kSupervised, 2, FillTexturePopup},
    {HostControl::path, PF_Param_PATH, kSupervised, 0, FillNothing},
    {HostControl::checkbox, PF_Param_CHECKBOX, kSupervised, 2, FillBool},
    {HostControl::popup, PF_Param_POPUP, kSupervised, 2, FillChosenPopup},
    {HostControl::groupStart, PF_Param_GROUP_START, 0, 2, FillNothing, true, false},
    {HostControl::groupEnd, PF_Param_GROUP_END, 0, 2, FillNothing, false, false},
    {HostControl::angle, PF_Param_ANGLE, kSupervisedCollapsed, 2, FillAngle},
};

PF_Err AddParameter(PF_InData& in, const ControlType& row, const Parameter& parameter, A_long hostIndex) {
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
        const auto row = std::find_if(std::begin(kControlTypes), std::end(kControlTypes),
                                      [&](const ControlType& known) { return known.control == kind.hostControl; });
        // A kind that the host has nothing for adds nothing, and takes a host index all the same.
        if (row != std::end(kControlTypes)) {
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
