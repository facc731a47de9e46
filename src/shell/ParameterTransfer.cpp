#include "shell/ParameterTransfer.h"

#include <cstring>
#include <optional>

#include "shell/ParameterMaps.h"
#include "shell/Worlds.h"

namespace quillon {

namespace {

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

std::optional<TargetControl> TargetOf(const EngineTurn& turn, std::uint32_t hostIndex) {
    const auto& known = ParameterMaps::instance().paramOfHostIndex;
    const auto found = known.find(hostIndex);
    if (found == known.end()) return std::nullopt;
    return TargetControl{found->second, turn->parameterInfo(found->second)->flags};
}

struct SweptControl {
    std::uint32_t hostIndex;
    std::optional<TargetControl> target;
};

std::vector<SweptControl> ListSweptControls(PF_InData& in, bool withLayers) {
    const auto& known = ParameterMaps::instance().hostIndexOfParam;
    const EngineTurn turn(in.sequence_data);
    std::vector<SweptControl> controls;
    const std::uint32_t count = turn->parameterCount();
    for (std::uint32_t i = 0; i < count; ++i) {
        const Parameter& parameter = *turn->parameterInfo(i);
        if (parameter.flags & ParameterFlag::kHidden) continue;
        const bool isPicture = parameter.kind == LAYER || parameter.kind == TEXTURE || parameter.kind == PATH;
        if (isPicture && !withLayers) continue;
        const auto found = known.find(i);
        if (found != known.end()) controls.push_back({found->second, TargetOf(turn, found->second)});
    }
    return controls;
}

LayerPixels PixelsOfLayer(PF_InData& in, PF_LayerDef& layer) {
    if (!layer.data) return {};
    const WorldPixels found = PixelsOf(in, layer);
    return LayerPixels(found, layer, found.bitDepth);
}

}  // namespace

ControlValue::ControlValue(PF_InData& in, PF_ParamDef& def, const TargetControl& target, SuiteCache& cache)
    : declarationIndex(target.declarationIndex) {
    const RenderScale scale(in);
    switch (def.param_type) {
        case PF_Param_LAYER:
            layer = PixelsOfLayer(in, def.u.ld);
            break;
        case PF_Param_ANGLE:
            setFloat(0, FromFixed(def.u.ad.value));
            break;
        case PF_Param_CHECKBOX:
            setInt(def.u.bd.value);
            break;
        case PF_Param_POPUP:
            setInt(def.u.pd.value);
            break;
        case PF_Param_COLOR: {
            PF_PixelFloat color{};
            cache.get(suites::kColorParam).PF_GetFloatingPointColorFromColorDef(in.effect_ref, &def, &color);
            setFloat(0, color.red);
            setFloat(1, color.green);
            setFloat(2, color.blue);
            setFloat(3, color.alpha);
            break;
        }
        case PF_Param_POINT: {
            const bool isScaled = (target.flags & ParameterFlag::kRemoveScale) != 0;
            setFloat(0, FromFixed(def.u.td.x_value) * (isScaled ? scale.sx : 1.0f));
            setFloat(1, FromFixed(def.u.td.y_value) * (isScaled ? scale.sy : 1.0f));
            break;
        }
        case PF_Param_FLOAT_SLIDER: {
            auto number = static_cast<float>(def.u.fs_d.value);
            if (target.flags & ParameterFlag::kScaleByWidth) number /= scale.sx / scale.par;
            if (target.flags & ParameterFlag::kScaleByHeight) number /= scale.sy;
            setFloat(0, number);
            break;
        }
        case PF_Param_POINT_3D:
            setFloat(0, static_cast<float>(def.u.point3d_d.x_value));
            setFloat(1, static_cast<float>(def.u.point3d_d.y_value));
            setFloat(2, static_cast<float>(def.u.point3d_d.z_value));
            break;
        default:
            break;
    }
}

void ControlValue::setFloat(std::size_t index, float number) {
    std::memcpy(&words[index], &number, sizeof number);
}

void ControlValue::setInt(std::int32_t number) {
    std::memcpy(words.data(), &number, sizeof number);
}

void ControlValue::apply(const EngineTurn& turn) const {
    if (layer && turn.hasGL()) layer.upload(turn, declarationIndex);
    turn->setParameterValue(declarationIndex, words.data());
}

CheckedOutControls::~CheckedOutControls() noexcept(false) {
    end.run([this] { CallForEach(defs, [this](PF_ParamDef def) { in.inter.checkin_param(in.effect_ref, &def); }); });
}

void CheckedOutControls::checkInLast() {
    PF_ParamDef def = defs.back();
    defs.pop_back();  // before the call: one that throws is not made again
    in.inter.checkin_param(in.effect_ref, &def);
}

ParameterSweep::ParameterSweep(PF_InData& in, bool withLayers, SuiteCache& cache) : checkedOut(in) {
    const std::vector<SweptControl> controls = ListSweptControls(in, withLayers);
    checkedOut.reserve(controls.size());
    values.reserve(controls.size());
    bool hasFailed = false;
    for (const auto& [hostIndex, target] : controls) {
        PF_ParamDef def{};
        if (!hasFailed)
            hasFailed = in.inter.checkout_param(in.effect_ref, static_cast<PF_ParamIndex>(hostIndex), in.current_time,
                                                in.time_step, in.time_scale, &def) != PF_Err_NONE;
        checkedOut.add(def);
        const bool hasValue = !hasFailed && target;
        if (hasValue) values.emplace_back(in, def, *target, cache);
        if (!hasValue || !values.back().hasPixels()) checkedOut.checkInLast();
    }
}

void ParameterSweep::apply(const EngineTurn& turn) const {
    for (const ControlValue& value : values) value.apply(turn);
}

ParameterSweep readAllParameters(PF_InData& in, bool withLayers, SuiteCache& cache) {
    return ParameterSweep(in, withLayers, cache);
}

void transferParameter(PF_InData& in, PF_ParamDef& def, std::uint32_t hostIndex, SuiteCache& cache) {
    const std::optional<TargetControl> target = TargetOf(EngineTurn(in.sequence_data), hostIndex);
    if (!target) return;
    const ControlValue value(in, def, *target, cache);
    value.apply(EngineTurn(in.sequence_data, value.hasPixels() ? GLUse::locked : GLUse::none));
}

}  // namespace quillon
