#include "cli/import/ControlNames.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

#include "cli/import/SourceText.h"

namespace quillon::cli {

namespace {

constexpr std::size_t kLongestLabel = 31;  // bytes that a host has room for

constexpr auto kReserved = std::to_array<std::string_view>(
    {"asm",       "cast",     "class",    "default", "double",    "dvec2",     "dvec3",         "dvec4", "enum",
     "extern",    "external", "fixed",    "fvec2",   "fvec3",     "fvec4",     "goto",          "half",  "highp",
     "hvec2",     "hvec3",    "hvec4",    "inline",  "input",     "interface", "long",          "lowp",  "mediump",
     "namespace", "noinline", "output",   "packed",  "precision", "public",    "sampler2DRect", "short", "sizeof",
     "static",    "superp",   "template", "this",    "typedef",   "union",     "unsigned",      "using", "volatile"});

constexpr auto kKeywords = std::to_array<std::string_view>(
    {"attribute", "bool",      "break",     "bvec2",       "bvec3",  "bvec4",  "const",    "continue", "discard",
     "do",        "else",      "false",     "float",       "for",    "if",     "in",       "inout",    "int",
     "ivec2",     "ivec3",     "ivec4",     "main",        "mat2",   "mat3",   "mat4",     "out",      "return",
     "sampler1D", "sampler2D", "sampler3D", "samplerCube", "struct", "switch", "true",     "uint",     "uniform",
     "varying",   "vec2",      "vec3",      "vec4",        "void",   "while",  "mainImage"});

template <class Words>
bool Holds(const Words& words, std::string_view name) {
    return std::ranges::find(words, name) != words.end();
}

}  // namespace

std::string ControlLabels::take(const std::string& wish) {
    std::string label = CutText(wish, kLongestLabel);
    for (int number = 2; taken.contains(label); ++number) {
        const std::string tail = " " + std::to_string(number);
        label = CutText(wish, kLongestLabel - tail.size()) + tail;
    }
    taken.insert(label);
    return label;
}

bool IsGlslName(const std::string& name) {
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; };
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    return !name.empty() && isLetter(name[0]) && !name.starts_with("gl_") &&
           std::ranges::all_of(name, [&](char c) { return isLetter(c) || isDigit(c); });
}

bool IsReservedWord(const std::string& name) {
    return Holds(kReserved, name);
}

bool IsGlslKeyword(const std::string& name) {
    return Holds(kKeywords, name);
}

void FitRange(double& least, double& most, double value) {
    if (least > most) std::swap(least, most);
    least = std::min(least, value);
    most = std::max(most, value);
    if (least == most) most = least + 1;
}

int DecimalsFor(double least, double most) {
    return std::clamp(3 - static_cast<int>(std::floor(std::log10(std::max(most - least, 1e-6)))), 0, 6);
}

}  // namespace quillon::cli
