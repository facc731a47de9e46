#include "script/Prelude.h"

#include "parameter/ControlKinds.h"

namespace quillon {

namespace {

// CLAMP and REPEAT have other values here than in GL's headers. Scripts rely on these.
constexpr const char* kOtherTables = R"js(
var QL_GL = {
    RED: 0x1903,
    GREEN: 0x1904,
    BLUE: 0x1905,
    ALPHA: 0x1906,
    NEAREST: 0x2600,
    LINEAR: 0x2601,
    NEAREST_MIPMAP_NEAREST: 0x2700,
    LINEAR_MIPMAP_NEAREST: 0x2701,
    NEAREST_MIPMAP_LINEAR: 0x2702,
    LINEAR_MIPMAP_LINEAR: 0x2703,
    TEXTURE_MAG_FILTER: 0x2800,
    TEXTURE_MIN_FILTER: 0x2801,
    TEXTURE_WRAP_S: 0x2802,
    TEXTURE_WRAP_T: 0x2803,
    CLAMP: 0x2804,
    REPEAT: 0x2805,
    CLAMP_TO_EDGE: 0x812F,
    CLAMP_TO_BORDER: 0x812D,
    MIRRORED_REPEAT: 0x8370,
    TEXTURE_MIN_LOD: 0x813A,
    TEXTURE_MAX_LOD: 0x813B,
    TEXTURE_BASE_LEVEL: 0x813C,
    TEXTURE_MAX_LEVEL: 0x813D,
    TEXTURE_LOD_BIAS: 0x8501,
    // GL_ARB_texture_swizzle
    TEXTURE_SWIZZLE_R: 0x8E42,
    TEXTURE_SWIZZLE_G: 0x8E43,
    TEXTURE_SWIZZLE_B: 0x8E44,
    TEXTURE_SWIZZLE_A: 0x8E45
};

var QL_ParamFlags = {
    NONE: 0,
    ScaleByWidth: 8,
    ScaleByHeight: 16,
    RemoveScale: 32
};

)js";

}  // namespace

std::string Prelude() {
    std::string text = "\n\nvar QL_Type = { ";
    const char* separator = "";
    for (const ControlKind& kind : kControlKinds) {
        text.append(separator).append(kind.name).append(": ").append(std::to_string(kind.number));
        separator = ", ";
    }
    return text.append(" };\n").append(kOtherTables);
}

}  // namespace quillon
