#include "shell/HostControls.h"

#include <algorithm>
#include <iterator>

#include "platform/Truncation.h"
#include "shell/Worlds.h"

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

// How the render's sizes relate to full resolution.
struct RenderScale {
    explicit RenderScale(const PF_InData& in)
        : par(static_cast<float>(in.pixel_aspect_ratio.num) / static_cast<float>(in.pixel_aspect_ratio.den)),
          sx(static_cast<float>(in.downsample_x.den) * par / static_cast<float>(in.downsample_x.num)),
          sy(static_cast<float>(in.downsample_y.den) / static_cast<float>(in.downsample_y.num)) {}
    float par, sx, sy;
};

float FromFixed(PF_Fixed number) {
    return static_cast<float>(number) * 1.52587890625e-5f;
}

void ReadFloat(const ValueRequest& request, EngineValue& value) {
    const RenderScale scale(request.in);
    auto number = static_cast<float>(request.def.u.fs_d.value);
    if (request.flags & ParameterFlag::kScaleByWidth) number /= scale.sx / scale.par;
    if (request.flags & ParameterFlag::kScaleByHeight) number /= scale.sy;
    value.setFloat(0, number);
}

void ReadPoint(const ValueRequest& request, EngineValue& value) {
    const PF_Point3DDef& point = request.def.u.point3d_d;
    value.setFloat(0, static_cast<float>(point.x_value));
    value.setFloat(1, static_cast<float>(point.y_value));
    value.setFloat(2, static_cast<float>(point.z_value));
}

void ReadColor(const ValueRequest& request, EngineValue& value) {
    PF_PixelFloat color{};
    request.cache.get(suites::kColorParam)
        .PF_GetFloatingPointColorFromColorDef(request.in.effect_ref, &request.def, &color);
    value.setFloat(0, color.red);
    value.setFloat(1, color.green);
    value.setFloat(2, color.blue);
    value.setFloat(3, color.alpha);
}

void ReadLayer(const ValueRequest& request, EngineValue& value) {
    PF_LayerDef& world = request.def.u.ld;
    if (!world.data) return;
    const WorldPixels found = PixelsOf(request.in, world);
    value.layer = LayerPixels(found, world, found.bitDepth);
}

void ReadPoint2D(const ValueRequest& request, EngineValue& value) {
    const RenderScale scale(request.in);
    const bool isScaled = (request.flags & ParameterFlag::kRemoveScale) != 0;
    const PF_PointDef& point = request.def.u.td;
    value.setFloat(0, FromFixed(point.x_value) * (isScaled ? scale.sx : 1.0f));
    value.setFloat(1, FromFixed(point.y_value) * (isScaled ? scale.sy : 1.0f));
}

void ReadPopup(const ValueRequest& request, EngineValue& value) {
    value.setInt(request.def.u.pd.value);
}

void ReadBool(const ValueRequest& request, EngineValue& value) {
    value.setInt(request.def.u.bd.value);
}

void ReadAngle(const ValueRequest& request, EngineValue& value) {
    value.setFloat(0, FromFixed(request.def.u.ad.value));
}

void ReadNothing(const ValueRequest&, EngineValue&) {}

constexpr HostControlType kHostControls[] = {
    {HostControl::floatSlider, PF_Param_FLOAT_SLIDER, kSupervisedCollapsed, 2, FillFloat, ReadFloat},
    {HostControl::point3D, PF_Param_POINT_3D, 0, 2, FillPoint, ReadPoint},
    {HostControl::color, PF_Param_COLOR, kSupervisedCollapsed, 2, FillColor, ReadColor},
    {HostControl::layer, PF_Param_LAYER, kSupervised, 2, FillNothing, ReadLayer},
    {HostControl::point2D, PF_Param_POINT, kSupervisedCollapsed, 2, FillPoint2D, ReadPoint2D},
    {HostControl::texturePopup, PF_Param_POPUP, kSupervised, 2, FillTexturePopup, ReadPopup},
    {HostControl::path, PF_Param_PATH, kSupervised, 0, FillNothing, ReadNothing},
    {HostControl::checkbox, PF_Param_CHECKBOX, kSupervised, 2, FillBool, ReadBool},
    {HostControl::popup, PF_Param_POPUP, kSupervised, 2, FillChosenPopup, ReadPopup},
    {HostControl::groupStart, PF_Param_GROUP_START, 0, 2, FillNothing, ReadNothing, true, false},
    {HostControl::groupEnd, PF_Param_GROUP_END, 0, 2, FillNothing, ReadNothing, false, false},
    {HostControl::angle, PF_Param_ANGLE, kSupervisedCollapsed, 2, FillAngle, ReadAngle},
};

template <class Value>
const HostControlType* FindBy(Value HostControlType::*field, Value wanted) {
    const auto* const row = std::find_if(std::begin(kHostControls), std::end(kHostControls),
                                         [&](const HostControlType& known) { return known.*field == wanted; });
    return row != std::end(kHostControls) ? row : nullptr;
}

}  // namespace

const HostControlType* FindHostControl(HostControl control) {
    return FindBy(&HostControlType::control, control);
}

const HostControlType* FindHostControl(PF_ParamType type) {
    return FindBy(&HostControlType::type, type);
}

}  // namespace quillon
