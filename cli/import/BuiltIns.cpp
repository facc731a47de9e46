#include "cli/import/BuiltIns.h"

namespace quillon::cli {

namespace {

// The days of both formats' dates are the same; only the month counts from 1 or from 0.
constexpr BuiltIn kOfIsf[] = {
    {"TIME", "float", "frame.time", false},     {"TIMEDELTA", "float", "frame.delta", true},
    {"FRAMEINDEX", "int", "frame.index", true}, {"DATE", "vec4", "[2000, 1, 1, frame.time % 86400]", false},
    {"PASSINDEX", "int", "index", false},       {"RENDERSIZE", "vec2", "[width, height]", false},
};
constexpr BuiltIn kOfPasted[] = {
    {"iTime", "float", "frame.time", false},
    {"iGlobalTime", "float", "frame.time", false},
    {"iTimeDelta", "float", "frame.delta", true},
    {"iFrame", "int", "frame.index", true},
    {"iFrameRate", "float", "frame.rate", true},
    {"iDate", "vec4", "[2000, 0, 1, frame.time % 86400]", false},
    {"iResolution", "vec3", "[width, height, 1]", false},
    {"iSampleRate", "float", "44100", false},
};

}  // namespace

std::span<const BuiltIn> BuiltIns(ShaderFormat format) {
    if (format == ShaderFormat::isf) return kOfIsf;
    return kOfPasted;
}

const BuiltIn* FindBuiltIn(const std::string& name, ShaderFormat format) {
    for (const BuiltIn& builtIn : BuiltIns(format)) {
        if (name == builtIn.name) return &builtIn;
    }
    return nullptr;
}

}  // namespace quillon::cli
