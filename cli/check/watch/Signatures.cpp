#include "cli/check/watch/Signatures.h"

#include <algorithm>
#include <stdexcept>

namespace quillon::cli {

namespace {

using enum Role;

constexpr Signature kSignatures[] = {
    {"QL_blitRenderTarget", {{{"source", target}, {"destination", target}, {"flip", anything}, {"linear", anything}}}},
    {"QL_getContextExtent"},
    {"QL_getInputOrigin"},
    {"QL_getParamFlags", {{{"id", control}}}},
    {"QL_getParamValue", {{{"id", control}}}},
    {"QL_getSequenceRT"},
    {"QL_getSequenceTexture"},
    {"QL_getShaderError", {{{"shader", shader}}}},
    {"QL_getShaderParamType", {{{"shader", shader}, {"name", text}}}},
    {"QL_getSurfaceDim", {{{"id", picture}}}},
    {"QL_getTime"},
    {"QL_initParam", {{{"name", text}, {"kind", anything}, {"label", anything}}}},
    {"QL_initRenderTarget", {{{"width", number}, {"height", number}, {"bits", number}}}},
    {"QL_initShader", {{{"name", text}, {"source", anything}}}},
    {"QL_initSurface", {{{"width", number}, {"height", number}, {"bits", number}}}},
    {"QL_initTexture", {{{"file", text}}}},
    {"QL_release", {{{"id", entity}}}},
    {"QL_renderShader", {{{"shader", shader}, {"target", target}, {"flip", anything}, {"viewport", anything}}}},
    {"QL_setOutputExtent", {{{"width", number}, {"height", number}}}},
    {"QL_setParamChoices", {{{"id", control}, {"text", text}}}},
    {"QL_setParamEnabled", {{{"id", control}, {"enabled", anything}}}},
    {"QL_setParamFlags", {{{"id", control}, {"flags", number}}}},
    {"QL_setParamMinMax", {{{"id", control}, {"min", number}, {"max", number}}}},
    {"QL_setParamPrecision", {{{"id", control}, {"digits", number}}}},
    {"QL_setParamValue", {{{"id", control}, {"value", anything}}}},
    {"QL_setShaderParam", {{{"shader", shader}, {"param", control}}}},
    {"QL_setShaderParamVal", {{{"shader", shader}, {"name", text}, {"value", anything}}}},
    {"QL_setTextureParam", {{{"id", anyPicture}, {"name", number}, {"value", number}}}},
    {"QL_surfaceCopyTo", {{{"surface", surface}, {"target", picture}, {"flip", anything}}}},
    {"QL_surfaceQuantize",
     {{{"surface", surface},
       {"grayscale", anything},
       {"mode", number},
       {"dither", number},
       {"value", number},
       {"serpentine", anything}}}},
    {"QL_surfaceToTexture", {{{"surface", surface}}}},
    {"QL_textureToSurface", {{{"id", anyPicture}}}},
};
static_assert(std::ranges::is_sorted(kSignatures, {}, &Signature::native));

}  // namespace

std::string Signature::asText() const {
    std::string words(native);
    const char* separator = "(";
    for (const Argument& argument : arguments) {
        if (argument.role == none) break;
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
