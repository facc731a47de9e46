#include "cli/check/watch/Signatures.h"

#include <algorithm>
#include <stdexcept>

namespace quillon::cli {

namespace {

constexpr Signature kSignatures[] = {
    {"QL_blitRenderTarget",
     {{{"source", Role::target}, {"destination", Role::target}, {"flip", Role::anything}, {"linear", Role::anything}}}},
    {"QL_getContextExtent"},
    {"QL_getInputOrigin"},
    {"QL_getParamFlags", {{{"id", Role::control}}}},
    {"QL_getParamValue", {{{"id", Role::control}}}},
    {"QL_getSequenceRT"},
    {"QL_getSequenceTexture"},
    {"QL_getShaderError", {{{"shader", Role::shader}}}},
    {"QL_getShaderParamType", {{{"shader", Role::shader}, {"name", Role::text}}}},
    {"QL_getSurfaceDim", {{{"id", Role::picture}}}},
    {"QL_getTime"},
    {"QL_initParam", {{{"name", Role::text}, {"kind", Role::anything}, {"label", Role::anything}}}},
    {"QL_initRenderTarget", {{{"width", Role::number}, {"height", Role::number}, {"bits", Role::number}}}},
    {"QL_initShader", {{{"name", Role::text}, {"source", Role::anything}}}},
    {"QL_initSurface", {{{"width", Role::number}, {"height", Role::number}, {"bits", Role::number}}}},
    {"QL_initTexture", {{{"file", Role::text}}}},
    {"QL_release", {{{"id", Role::entity}}}},
    {"QL_renderShader",
     {{{"shader", Role::shader}, {"target", Role::target}, {"flip", Role::anything}, {"viewport", Role::anything}}}},
    {"QL_setOutputExtent", {{{"width", Role::number}, {"height", Role::number}}}},
    {"QL_setParamChoices", {{{"id", Role::control}, {"text", Role::text}}}},
    {"QL_setParamEnabled", {{{"id", Role::control}, {"enabled", Role::anything}}}},
    {"QL_setParamFlags", {{{"id", Role::control}, {"flags", Role::number}}}},
    {"QL_setParamMinMax", {{{"id", Role::control}, {"min", Role::number}, {"max", Role::number}}}},
    {"QL_setParamPrecision", {{{"id", Role::control}, {"digits", Role::number}}}},
    {"QL_setParamValue", {{{"id", Role::control}, {"value", Role::anything}}}},
    {"QL_setShaderParam", {{{"shader", Role::shader}, {"param", Role::control}}}},
    {"QL_setShaderParamVal", {{{"shader", Role::shader}, {"name", Role::text}, {"value", Role::anything}}}},
    {"QL_setTextureParam", {{{"id", Role::anyPicture}, {"name", Role::number}, {"value", Role::number}}}},
    {"QL_surfaceCopyTo", {{{"surface", Role::surface}, {"target", Role::picture}, {"flip", Role::anything}}}},
    {"QL_surfaceQuantize",
     {{{"surface", Role::surface},
       {"grayscale", Role::anything},
       {"mode", Role::number},
       {"dither", Role::number},
       {"value", Role::number},
       {"serpentine", Role::anything}}}},
    {"QL_surfaceToTexture", {{{"surface", Role::surface}}}},
    {"QL_textureToSurface", {{{"id", Role::anyPicture}}}},
};
static_assert(std::ranges::is_sorted(kSignatures, {}, &Signature::native));

}  // namespace

std::string Signature::asText() const {
    std::string words(native);
    const char* separator = "(";
    for (const Argument& argument : arguments) {
        if (argument.role == Role::none) break;
        words.append(separator).append(argument.name);
        separator = ", ";
    }
    return words + ")";
}

const Signature& SignatureOf(std::string_view native) {
    const auto found = std::ranges::lower_bound(kSignatures, native, {}, &Signature::native);
    if (found == std::end(kSignatures) || found->native != native)
        throw std::logic_error("internal error: nothing is known of the arguments of " + std::string(native));
    return *found;
}

}  // namespace quillon::cli
