#include "cli/effect/ControlTexts.h"

#include <fmt/format.h>

#include <string>
#include <string_view>

namespace quillon::cli {

namespace {

using Json = nlohmann::ordered_json;

// A float as the shortest text that means it, instead of its neighbors' digits as a double.
double Short(float number) {
    return std::stod(fmt::format("{}", number));
}

double FromFixed(PF_Fixed number) {
    return number / 65536.0;
}

Json Color(const PF_UnionablePixel& pixel) {
    return {pixel.red, pixel.green, pixel.blue, pixel.alpha};
}

void DescribeFloat(Json& json, const PF_ParamDef& def) {
    const PF_FloatSliderDef& slider = def.u.fs_d;
    json["type"] = "FLOAT_SLIDER";
    json["value"] = Short(static_cast<float>(slider.value));
    json["default"] = Short(slider.dephault);
    json["valid_min"] = Short(slider.valid_min);
    json["valid_max"] = Short(slider.valid_max);
    json["slider_min"] = Short(slider.slider_min);
    json["slider_max"] = Short(slider.slider_max);
    json["precision"] = slider.precision;
    json["display_flags"] = slider.display_flags;
    json["curve_tolerance"] = Short(slider.curve_tolerance);
}

void DescribePoint3D(Json& json, const PF_ParamDef& def) {
    const PF_Point3DDef& point = def.u.point3d_d;
    json["type"] = "POINT_3D";
    json["value"] = {point.x_value, point.y_value, point.z_value};
    json["default"] = {point.x_dephault, point.y_dephault, point.z_dephault};
}

void DescribeColor(Json& json, const PF_ParamDef& def) {
    json["type"] = "COLOR";
    json["value"] = Color(def.u.cd.value);
    json["default"] = Color(def.u.cd.dephault);
}

void DescribeLayer(Json& json, const PF_ParamDef&) {
    json["type"] = "LAYER";
    json["default"] = 0;
}

void DescribePoint(Json& json, const PF_ParamDef& def) {
    const PF_PointDef& point = def.u.td;
    const auto share = [](PF_Fixed number) { return static_cast<std::uint32_t>(number) / 4294967296.0; };
    json["type"] = "POINT";
    json["value"] = {FromFixed(point.x_value), FromFixed(point.y_value)};
    json["default"] = {FromFixed(point.x_dephault), FromFixed(point.y_dephault)};
    json["default_share"] = {share(point.x_dephault), share(point.y_dephault)};
    json["restrict_bounds"] = point.restrict_bounds != 0;
}

void DescribePopup(Json& json, const PF_ParamDef& def) {
    const PF_PopupDef& popup = def.u.pd;
    json["type"] = "POPUP";
    json["value"] = popup.value;
    json["default"] = popup.dephault;
    json["num_choices"] = popup.num_choices;
    json["choices"] = Json::array();
    std::string_view rest = popup.u.namesptr ? popup.u.namesptr : "";
    while (!rest.empty()) {
        const std::size_t end = rest.find('|');
        json["choices"].push_back(std::string(rest.substr(0, end)));
        rest = end == std::string_view::npos ? "" : rest.substr(end + 1);
    }
}

void DescribePath(Json& json, const PF_ParamDef& def) {
    json["type"] = "PATH";
    json["default"] = def.u.path_d.dephault;
}

void DescribeCheckbox(Json& json, const PF_ParamDef& def) {
    const PF_CheckBoxDef& box = def.u.bd;
    json["type"] = "CHECKBOX";
    json["value"] = box.value;
    json["default"] = static_cast<int>(box.dephault);
    json["text"] = box.u.nameptr ? box.u.nameptr : "";
}

void DescribeAngle(Json& json, const PF_ParamDef& def) {
    json["type"] = "ANGLE";
    json["value"] = FromFixed(def.u.ad.value);
    json["default"] = FromFixed(def.u.ad.dephault);
}

void DescribeGroupStart(Json& json, const PF_ParamDef&) {
    json["type"] = "GROUP_START";
}

void DescribeGroupEnd(Json& json, const PF_ParamDef&) {
    json["type"] = "GROUP_END";
}

struct TypeRow {
    PF_ParamType type;
    void (*describe)(Json& json, const PF_ParamDef& def);
};

constexpr TypeRow kTypes[] = {{PF_Param_FLOAT_SLIDER, DescribeFloat}, {PF_Param_POINT_3D, DescribePoint3D},
                              {PF_Param_COLOR, DescribeColor},        {PF_Param_LAYER, DescribeLayer},
                              {PF_Param_POINT, DescribePoint},        {PF_Param_POPUP, DescribePopup},
                              {PF_Param_PATH, DescribePath},          {PF_Param_CHECKBOX, DescribeCheckbox},
                              {PF_Param_ANGLE, DescribeAngle},        {PF_Param_GROUP_START, DescribeGroupStart},
                              {PF_Param_GROUP_END, DescribeGroupEnd}};

}  // namespace

Json DescribeControl(const Control& control, const PF_ParamDef& def) {
    // Where memory is refused, the library does not survive the change of a null into an object.
    Json json = Json::object();
    json["index"] = control.index;
    json["uniform"] = control.declared.uniformName;
    json["label"] = control.declared.label;
    json["kind"] = ControlKindOf(control.declared.kind).name;
    json["type"] = nullptr;
    json["param_type"] = def.param_type;
    json["name"] = std::string(def.PF_DEF_NAME);
    json["id"] = def.uu.id;
    json["flags"] = def.flags;
    json["ui_flags"] = def.ui_flags;
    for (const TypeRow& row : kTypes)
        if (row.type == def.param_type) row.describe(json, def);
    return json;
}

}  // namespace quillon::cli
