#include "host/HostInstance.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

#include "host/HostSession.h"

namespace quillon::host {

namespace {

PF_Fixed ToFixed(double value) {
    const double scaled = std::clamp(std::round(value * 65536.0), -2147483648.0, 2147483647.0);
    return static_cast<PF_Fixed>(scaled);
}

A_u_char ToByte(float value) {
    return static_cast<A_u_char>(std::lround(std::clamp(value, 0.0f, 1.0f) * 255.0f));
}

PF_PixelFloat ToFloats(const PF_Pixel& pixel) {
    return {pixel.alpha / 255.0f, pixel.red / 255.0f, pixel.green / 255.0f, pixel.blue / 255.0f};
}

}  // namespace

HostInstance::HostInstance(HostSession& owner, int instanceNumber)
    : session(owner),
      number(instanceNumber),
      currentTime(owner.settings().currentTime),
      timeStep(owner.settings().timeStep),
      timeScale(owner.settings().timeScale) {
    PF_ParamIndex index = 0;
    for (const PF_ParamDef& def : owner.parameters()) {
        PF_ParamDef& own = params[++index] = def;
        own.unused = index;  // identifies the control when the effect hands a copy back
        own.uu.change_flags = PF_ChangeFlag_NONE;
        if (own.param_type == PF_Param_LAYER) own.u = {};
    }
}

PF_ParamDef& HostInstance::paramOfType(PF_ParamIndex index, PF_ParamType type) {
    PF_ParamDef& def = params.at(index);
    if (def.param_type != type)
        throw std::logic_error("control " + std::to_string(index) + " is of type " + std::to_string(def.param_type) +
                               ", not of type " + std::to_string(type));
    return def;
}

void HostInstance::setFloat(PF_ParamIndex index, double value) {
    paramOfType(index, PF_Param_FLOAT_SLIDER).u.fs_d.value = value;
}

void HostInstance::setAngle(PF_ParamIndex index, double degrees) {
    paramOfType(index, PF_Param_ANGLE).u.ad.value = ToFixed(degrees);
}

void HostInstance::setCheckbox(PF_ParamIndex index, bool isChecked) {
    paramOfType(index, PF_Param_CHECKBOX).u.bd.value = isChecked ? 1 : 0;
}

void HostInstance::setPopup(PF_ParamIndex index, A_long entryFromOne) {
    paramOfType(index, PF_Param_POPUP).u.pd.value = entryFromOne;
}

void HostInstance::setPoint(PF_ParamIndex index, double x, double y) {
    PF_PointDef& point = paramOfType(index, PF_Param_POINT).u.td;
    point.x_value = ToFixed(x);
    point.y_value = ToFixed(y);
}

void HostInstance::setPoint3D(PF_ParamIndex index, double x, double y, double z) {
    PF_Point3DDef& point = paramOfType(index, PF_Param_POINT_3D).u.point3d_d;
    point.x_value = x;
    point.y_value = y;
    point.z_value = z;
}

void HostInstance::setColor(PF_ParamIndex index, const PF_PixelFloat& color) {
    PF_ColorDef& def = paramOfType(index, PF_Param_COLOR).u.cd;
    def.value = {ToByte(color.alpha), ToByte(color.red), ToByte(color.green), ToByte(color.blue)};
    colors[index] = color;
}

void HostInstance::setLayer(PF_ParamIndex index, std::shared_ptr<World> picture) {
    PF_ParamDef& def = paramOfType(index, PF_Param_LAYER);
    def.u.ld = picture ? picture->record() : PF_LayerDef{};
    layers[index] = std::move(picture);
}

PF_PixelFloat HostInstance::color(PF_ParamIndex index) const {
    const auto found = colors.find(index);
    return found == colors.end() ? ToFloats(params.at(index).u.cd.value) : found->second;
}

std::shared_ptr<World> HostInstance::layer(PF_ParamIndex index) const {
    const auto found = layers.find(index);
    return found == layers.end() ? nullptr : found->second;
}

void HostInstance::takeOver(PF_ParamIndex index, const PF_ParamDef& changed) {
    PF_ParamDef& def = params.at(index);
    if (def.param_type == PF_Param_LAYER) return;
    def.u = changed.u;
    colors.erase(index);
}

void HostInstance::copyValues(const HostInstance& other) {
    params = other.params;
    colors = other.colors;
    layers = other.layers;
    currentTime = other.currentTime;
    timeStep = other.timeStep;
    timeScale = other.timeScale;
}

}  // namespace quillon::host
