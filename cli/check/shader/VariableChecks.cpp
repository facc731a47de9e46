#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <vector>

#include "cli/check/shader/ShaderChecks.h"
#include "cli/diagnostics/TextScanner.h"

namespace quillon::cli {

namespace {

constexpr std::string_view kFed = "float vec2 vec3 vec4 int bool sampler2D";

struct Unfed {
    std::string_view types;
    const char* remedy;
};
constexpr Unfed kUnfed[] = {
    {"mat2 mat3 mat4 mat2x2 mat2x3 mat2x4 mat3x2 mat3x3 mat3x4 mat4x2 mat4x3 mat4x4",
     "declare a uniform for each column, a vec2, vec3 or vec4"},
    {"ivec2 ivec3 ivec4 bvec2 bvec3 bvec4", "declare an int or a bool for each part, or a vector of floats"},
    {"sampler1D sampler3D sampler1DShadow sampler2DShadow sampler2DRect samplerCubeShadow",
     "only flat pictures can be read: use a sampler2D"},
    {"samplerCube", "write a blank right after samplerCube, or use a sampler2D"},
};

// A variable outside of all functions.
struct Declared {
    std::string_view qualifier;  // "uniform", "varying" or "attribute"
    const SourceToken* type;
    const SourceToken* name;
    bool isArray = false;
    bool hasValue = false;
};

std::vector<Declared> DeclarationsOf(const ShaderSource& source) {
    std::vector<Declared> declared;
    const auto& code = source.code();
    for (std::size_t i = 0; i < code.size(); ++i) {
        if (code[i].text == "{" || code[i].text == "(") i = source.closing(i);
        if (i >= code.size() || !HoldsName("uniform varying attribute", code[i].text)) continue;
        const std::string_view qualifier = code[i].text;
        ++i;
        while (i < code.size() && HoldsName("highp mediump lowp const invariant", code[i].text)) ++i;
        if (i >= code.size() || !code[i].isWord()) continue;
        const SourceToken* const type = &code[i];
        bool isName = true;
        for (++i; i < code.size() && code[i].text != ";" && code[i].text != "{"; ++i) {
            if (isName && code[i].isWord())
                declared.push_back({qualifier, type, &code[i], source.codeText(i + 1) == "["});
            if (code[i].text == "=" && !declared.empty()) declared.back().hasValue = true;
            isName = code[i].text == ",";
            if (code[i].text == "(" || code[i].text == "[") i = source.closing(i);
        }
        if (i < code.size() && code[i].text == "{") --i;
    }
    return declared;
}

void CheckUniform(const Declared& uniform, const std::set<std::string>& structures, ShaderFindings& findings) {
    const std::string& type = uniform.type->text;
    const bool isRenamed = uniform.type->isRenamed();
    if (uniform.isArray) {
        findings.add("shader/unfed-uniform", *uniform.name,
                     fmt::format("no value reaches {}, since it is an array", uniform.name->text),
                     "declare a uniform for each element");
        return;
    }
    if (HoldsName(kFed, type) || isRenamed) return;
    const auto* row = std::ranges::find_if(kUnfed, [&](const Unfed& each) { return HoldsName(each.types, type); });
    if (row == std::end(kUnfed) && !structures.contains(type)) return;
    findings.add("shader/unfed-uniform", *uniform.name,
                 fmt::format("no value reaches {}, since it is {}", uniform.name->text, WithArticle(type)),
                 row != std::end(kUnfed) ? row->remedy : "declare a uniform for each member");
}

// "Texture0Params" and "s_Texture0Params": the engine fills them when it comes to a sampler, and the values of the
// uniforms that are declared later follow.
bool IsFilledWithSampler(std::string_view name) {
    if (name.starts_with("s_")) name.remove_prefix(2);
    return name.starts_with("Texture") && name.ends_with("Params");
}

}  // namespace

void CheckVariables(const ShaderSource& source, ShaderFindings& findings) {
    std::map<std::string_view, int> uses;
    for (const SourceToken& token : source.tokens())
        if (token.isWord() && token.presence != SourceToken::Presence::left) ++uses[token.text];
    std::set<std::string> structures;
    const auto& code = source.code();
    for (std::size_t i = 1; i < code.size(); ++i)
        if (code[i - 1].text == "struct") structures.insert(code[i].text);

    bool isAfterSampler = false;
    for (const Declared& variable : DeclarationsOf(source)) {
        if (variable.hasValue && variable.qualifier == "uniform")
            findings.add(kForeignRule, *variable.name, "GLSL 1.10 has no uniforms with a value",
                         "give it one with QL_setShaderParamVal");
        if (uses[variable.name->text] < 2) continue;  // the compiler removes it
        if (variable.qualifier != "uniform") {
            findings.add(
                "shader/varying", *variable.name,
                fmt::format("nothing gives {} a value: Quillon has its own vertex stage", variable.name->text));
            continue;
        }
        CheckUniform(variable, structures, findings);
        isAfterSampler = isAfterSampler || variable.type->given == "sampler2D";
        if (isAfterSampler && IsFilledWithSampler(variable.name->text) && variable.type->text == "vec4")
            findings.add("shader/late-size", *variable.name,
                         fmt::format("{} loses the size that Quillon fills in, since a sampler is declared before it",
                                     variable.name->text));
    }
}

}  // namespace quillon::cli
