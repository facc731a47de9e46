#include "cli/import/GlslTypes.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quillon::cli {

namespace {

using Base = GlslType::Base;

struct Row {
    std::string_view name;
    GlslType type;
};
const Row kTypes[] = {{"void", {Base::none}},
                      {"float", {Base::floating}},
                      {"vec2", {Base::floating, 2}},
                      {"vec3", {Base::floating, 3}},
                      {"vec4", {Base::floating, 4}},
                      {"int", {Base::integer}},
                      {"ivec2", {Base::integer, 2}},
                      {"ivec3", {Base::integer, 3}},
                      {"ivec4", {Base::integer, 4}},
                      {"bool", {Base::boolean}},
                      {"bvec2", {Base::boolean, 2}},
                      {"bvec3", {Base::boolean, 3}},
                      {"bvec4", {Base::boolean, 4}},
                      {"mat2", {Base::floating, 2, true}},
                      {"mat3", {Base::floating, 3, true}},
                      {"mat4", {Base::floating, 4, true}},
                      {"sampler2D", {Base::sampler, 1, false, "sampler2D"}}};

// How the type of the result follows from those of the arguments.
enum class Result { widest, first, scalar, vec3, vec4, vec2, truth, truths };

struct Function {
    std::string_view name;
    Result result;
};
constexpr auto kFunctions = std::to_array<Function>({{"radians", Result::first},
                                                     {"degrees", Result::first},
                                                     {"sin", Result::first},
                                                     {"cos", Result::first},
                                                     {"tan", Result::first},
                                                     {"asin", Result::first},
                                                     {"acos", Result::first},
                                                     {"atan", Result::first},
                                                     {"sinh", Result::first},
                                                     {"cosh", Result::first},
                                                     {"tanh", Result::first},
                                                     {"asinh", Result::first},
                                                     {"acosh", Result::first},
                                                     {"atanh", Result::first},
                                                     {"pow", Result::first},
                                                     {"exp", Result::first},
                                                     {"log", Result::first},
                                                     {"exp2", Result::first},
                                                     {"log2", Result::first},
                                                     {"sqrt", Result::first},
                                                     {"inversesqrt", Result::first},
                                                     {"abs", Result::first},
                                                     {"sign", Result::first},
                                                     {"floor", Result::first},
                                                     {"ceil", Result::first},
                                                     {"round", Result::first},
                                                     {"roundEven", Result::first},
                                                     {"trunc", Result::first},
                                                     {"fract", Result::first},
                                                     {"mod", Result::widest},
                                                     {"min", Result::widest},
                                                     {"max", Result::widest},
                                                     {"clamp", Result::widest},
                                                     {"mix", Result::widest},
                                                     {"step", Result::widest},
                                                     {"smoothstep", Result::widest},
                                                     {"length", Result::scalar},
                                                     {"distance", Result::scalar},
                                                     {"dot", Result::scalar},
                                                     {"cross", Result::vec3},
                                                     {"normalize", Result::first},
                                                     {"faceforward", Result::first},
                                                     {"reflect", Result::first},
                                                     {"refract", Result::first},
                                                     {"dFdx", Result::first},
                                                     {"dFdy", Result::first},
                                                     {"fwidth", Result::first},
                                                     {"transpose", Result::first},
                                                     {"inverse", Result::first},
                                                     {"determinant", Result::scalar},
                                                     {"matrixCompMult", Result::first},
                                                     {"texture", Result::vec4},
                                                     {"textureLod", Result::vec4},
                                                     {"textureGrad", Result::vec4},
                                                     {"textureProj", Result::vec4},
                                                     {"texelFetch", Result::vec4},
                                                     {"IMG_SIZE", Result::vec2},
                                                     {"texture2D", Result::vec4},
                                                     {"IMG_NORM_PIXEL", Result::vec4},
                                                     {"IMG_PIXEL", Result::vec4},
                                                     {"IMG_THIS_PIXEL", Result::vec4},
                                                     {"IMG_THIS_NORM_PIXEL", Result::vec4},
                                                     {"IMG_NORM_THIS_PIXEL", Result::vec4},
                                                     {"lessThan", Result::truths},
                                                     {"lessThanEqual", Result::truths},
                                                     {"greaterThan", Result::truths},
                                                     {"greaterThanEqual", Result::truths},
                                                     {"equal", Result::truths},
                                                     {"notEqual", Result::truths},
                                                     {"any", Result::truth},
                                                     {"all", Result::truth},
                                                     {"not", Result::first}});

// Those that take whole numbers too, or truth values.
constexpr auto kOfAnyKind =
    std::to_array<std::string_view>({"lessThan", "lessThanEqual", "greaterThan", "greaterThanEqual", "equal",
                                     "notEqual", "any", "all", "not", "texelFetch"});
// Those that drivers give for whole numbers too when all arguments are whole.
constexpr auto kOfWholeNumbers = std::to_array<std::string_view>({"min", "max", "abs", "sign", "clamp"});

template <class Names>
bool Holds(const Names& names, std::string_view name) {
    return std::ranges::find(names, name) != names.end();
}

GlslType WidestOf(const std::vector<GlslType>& types) {
    GlslType widest = types.empty() ? GlslType{} : types[0];
    for (const GlslType& type : types) {
        if (!type.isKnown()) return {};
        if (type.size > widest.size) widest = type;
    }
    return widest;
}

}  // namespace

std::string GlslType::spelled() const {
    for (const Row& row : kTypes) {
        GlslType element = *this;
        element.isArray = false;
        element.length = 0;
        if (row.type == element) return std::string(row.name);
    }
    return name;
}

std::optional<GlslType> TypeNamed(const std::string& name) {
    for (const Row& row : kTypes) {
        if (row.name == name) return row.type;
    }
    return std::nullopt;
}

GlslType FloatOfSize(int size) {
    return {Base::floating, size};
}

BuiltInCall CallBuiltIn(const std::string& name, const std::vector<GlslType>& arguments) {
    const auto* found = std::ranges::find(kFunctions, std::string_view(name), &Function::name);
    if (found == kFunctions.end()) return {};
    const auto isInt = [](const GlslType& type) { return type.isInt(); };
    const bool isWhole = !arguments.empty() && std::ranges::all_of(arguments, isInt);
    BuiltInCall call{.isKnown = true};
    call.needsFloats = !Holds(kOfAnyKind, name) && !(isWhole && Holds(kOfWholeNumbers, name));
    const GlslType first = arguments.empty() ? GlslType{} : arguments[0];
    switch (found->result) {
        case Result::widest:
            call.type = WidestOf(arguments);
            break;
        case Result::first:
            call.type = first;
            break;
        case Result::scalar:
            call.type = FloatOfSize(1);
            break;
        case Result::vec2:
            call.type = FloatOfSize(2);
            break;
        case Result::vec3:
            call.type = FloatOfSize(3);
            break;
        case Result::vec4:
            call.type = FloatOfSize(4);
            break;
        case Result::truth:
            call.type = {Base::boolean};
            break;
        case Result::truths:
            call.type = first.isKnown() ? GlslType{Base::boolean, first.size} : GlslType{};
            break;
    }
    if (call.needsFloats && call.type.isInt()) call.type = FloatOfSize(call.type.size);
    return call;
}

}  // namespace quillon::cli
