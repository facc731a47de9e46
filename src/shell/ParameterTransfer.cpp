#include "shell/ParameterTransfer.h"

#include <array>
#include <cstring>

#include "engine/AEQuillon2.h"
#include "engine/EngineLock.h"
#include "shell/ParameterMaps.h"
#include "shell/Worlds.h"

namespace quillon {

namespace {

// The 16 bytes of a value.
class Value {
public:
    void setFloat(int index, float number) { std::memcpy(words.data() + index, &number, sizeof number); }
    void setInt(std::int32_t number) { std::memcpy(words.data(), &number, sizeof number); }
    const void* bytes() const { return words.data(); }

private:
    std::array<std::uint32_t, 4> words{};
};

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

Value ValueOf(PF_InData& in, const PF_ParamDef& def, std::uint32_t flags, SuiteCache& cache) {
    const RenderScale scale(in);
    Value value;
    switch (def.param_type) {
        case PF_Param_ANGLE:
            value.setFloat(0, FromFixed(def.u.ad.value));
            break;
        case PF_Param_CHECKBOX:
            value.setInt(def.u.bd.value);
            break;
        case PF_Param_POPUP:
            value.setInt(def.u.pd.value);
            break;
        case PF_Param_COLOR: {
            PF_PixelFloat color{};
            cache.get(suites::kColorParam).PF_GetFloatingPointColorFromColorDef(in.effect_ref, &def, &color);
            value.setFloat(0, color.red);
            value.setFloat(1, color.green);
            value.setFloat(2, color.blue);
            value.setFloat(3, color.alpha);
            break;
        }
        case PF_Param_POINT: {
            const bool isScaled = (flags & ParameterFlag::removeScale) != 0;
            value.setFloat(0, FromFixed(def.u.td.x_value) * (isScaled ? scale.sx : 1.0f));
            value.setFloat(1, FromFixed(def.u.td.y_value) * (isScaled ? scale.sy : 1.0f));
            break;
        }
        case PF_Param_FLOAT_SLIDER: {
            auto number = static_cast<float>(def.u.fs_d.value);
            if (flags & ParameterFlag::scaleByWidth) number /= scale.sx / scale.par;
            if (flags & ParameterFlag::scaleByHeight) number /= scale.sy;
            value.setFloat(0, number);
            break;
        }
        case PF_Param_POINT_3D:
            value.setFloat(0, static_cast<float>(def.u.point3d_d.x_value));
            value.setFloat(1, static_cast<float>(def.u.point3d_d.y_value));
            value.setFloat(2, static_cast<float>(def.u.point3d_d.z_value));
            break;
        default:
            break;
    }
    return value;
}

void UploadLayer(PF_InData& in, PF_LayerDef& layer, std::uint32_t declarationIndex) {
    if (!layer.data) return;
    const WorldPixels pixels = PixelsOf(in, layer);
    if (!pixels.pixels) return;
    IPlugin& engine = AEQuillon2::instance();
    const EngineLock lock(engine);
    if (!lock.isHeld()) return;
    engine.setLayerPixels(declarationIndex, pixels.pixels, static_cast<std::uint32_t>(layer.width),
                          static_cast<std::uint32_t>(layer.height), pixels.bitDepth,
                          static_cast<std::uint64_t>(std::int64_t{layer.rowbytes}));
}

}  // namespace

void transferParameter(PF_InData& in, PF_ParamDef& def, std::uint32_t hostIndex, SuiteCache& cache) {
    const auto& maps = ParameterMaps::instance();
    const auto found = maps.paramOfHostIndex.find(hostIndex);
    if (found == maps.paramOfHostIndex.end()) return;
    const std::uint32_t index = found->second;
    IPlugin& engine = AEQuillon2::instance();
    const Value value = ValueOf(in, def, engine.parameterInfo(index)->flags, cache);
    if (def.param_type == PF_Param_LAYER) UploadLayer(in, def.u.ld, index);
    engine.setParameterValue(index, value.bytes());
}

void readAllParameters(PF_InData& in, bool withLayers, SuiteCache& cache) {
    IPlugin& engine = AEQuillon2::instance();
    const auto& maps = ParameterMaps::instance();
    bool hasFailed = false;
    const std::uint32_t count = engine.parameterCount();
    for (std::uint32_t i = 0; i < count; ++i) {
        const Parameter& parameter = *engine.parameterInfo(i);
        if (parameter.flags & ParameterFlag::hidden) continue;
        const bool isPicture = parameter.kind == LAYER || parameter.kind == TEXTURE || parameter.kind == PATH;
        if (isPicture && !withLayers) continue;
        const auto known = maps.hostIndexOfParam.find(i);
        if (known == maps.hostIndexOfParam.end()) continue;

        PF_ParamDef def{};
        if (!hasFailed)
            hasFailed = in.inter.checkout_param(in.effect_ref, static_cast<PF_ParamIndex>(known->second),
                                                in.current_time, in.time_step, in.time_scale, &def) != PF_Err_NONE;
        // The check-in happens whatever becomes of the value.
        struct CheckIn {
            PF_InData& in;
            PF_ParamDef& def;
            ~CheckIn() { in.inter.checkin_param(in.effect_ref, &def); }
        } const checkIn{in, def};
        if (!hasFailed) transferParameter(in, def, known->second, cache);
    }
}

}  // namespace quillon
