#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <span>

#include "cli/check/shader/ShaderChecks.h"

namespace quillon::cli {

namespace {

// Words of later versions of GLSL, and of other shader languages.
struct Foreign {
    std::string_view words;
    const char* instead;
};

// Functions, where a call is meant and the text has none of that name.
constexpr Foreign kCalls[] = {
    {"texture tex2D SAMPLE_TEXTURE2D", "use texture2D(picture, place)"},
    {"textureLod textureGrad textureOffset textureLodOffset texture2DLodEXT texture2DGradEXT texture2DGradARB tex2Dlod",
     "use texture2D: pictures have one level"},
    {"textureProj tex2Dproj", "use texture2D and divide the place yourself"},
    {"texelFetch", "use texture2D at (index + 0.5) / size, with nearest filtering"},
    {"textureSize", "send the size as a vec2 uniform"},
    {"textureCubeLod textureCubeLodEXT textureCubeGradEXT", "use textureCube(picture, direction)"},
    {"round", "use floor(x + 0.5)"},
    {"roundEven trunc modf", "use floor() and fract()"},
    {"sinh cosh tanh asinh acosh atanh", "write it with exp() and log()"},
    {"isnan", "compare: x != x"},
    {"isinf", "compare: abs(x) > 3.0e38"},
    {"transpose inverse determinant outerProduct", "write it out for the size that you need"},
    {"floatBitsToInt floatBitsToUint intBitsToFloat uintBitsToFloat bitCount bitfieldExtract",
     "there are no bits: compute with floor(), fract() and sin()"},
    {"saturate", "use clamp(x, 0.0, 1.0)"},
    {"lerp", "use mix()"},
    {"frac", "use fract()"},
    {"fmod", "use mod()"},
    {"rsqrt", "use inversesqrt()"},
    {"atan2", "use atan(y, x)"},
    {"ddx", "use dFdx()"},
    {"ddy", "use dFdy()"},
    {"mul", "use *"},
};

constexpr Foreign kWords[] = {
    {"precision highp mediump lowp", "delete it: precision is for mobile devices"},
    {"uint uvec2 uvec3 uvec4", "use int, or float for large numbers"},
    {"double dvec2 dvec3 dvec4 half", "use float"},
    {"mat2x3 mat2x4 mat3x2 mat3x4 mat4x2 mat4x3", "use vectors: only square matrices exist"},
    {"switch case", "use if and else"},
    {"layout", "delete it"},
    {"float2 half2", "use vec2"},
    {"float3 half3", "use vec3"},
    {"float4 half4", "use vec4"},
    {"float2x2", "use mat2"},
    {"float3x3", "use mat3"},
    {"float4x4", "use mat4"},
    {"sampler2DArray isampler2D usampler2D samplerBuffer image2D", "use a sampler2D"},
    {"gl_FragDepth", "a shader's only result is gl_FragColor"},
};

constexpr std::string_view kReserved =
    "asm cast class default enum extern external fixed goto half inline input interface long namespace noinline output "
    "packed public short sizeof static template this typedef union unsigned using volatile";
constexpr std::string_view kLaterKeywords =
    "buffer centroid coherent flat invariant noperspective patch precise readonly restrict sample shared smooth "
    "subroutine superp writeonly";

constexpr Foreign kForeignOperators[] = {
    {"% %=", "use mod() of floats, or a - b * (a / b)"},
    {"& | ^ ~ << >> &= |= ^= <<= >>=", "there are no bits: compute with floor() and mod()"},
};

const Foreign* FindForeign(std::span<const Foreign> table, std::string_view word) {
    const auto found = std::ranges::find_if(table, [&](const Foreign& row) { return HoldsName(row.words, word); });
    return found != table.end() ? &*found : nullptr;
}

class Dialect {
public:
    Dialect(const ShaderSource& shaderSource, ShaderFindings& shaderFindings)
        : source(shaderSource), findings(shaderFindings), names(shaderSource) {}

    void check() {
        const auto& code = source.code();
        int depth = 0;
        for (std::size_t i = 0; i < code.size(); ++i) {
            const SourceToken& token = code[i];
            if (HoldsName("{ (", token.text)) ++depth;
            if (HoldsName("} )", token.text)) --depth;
            if (token.kind == GlslToken::Kind::number) checkNumber(token);
            if (token.kind == GlslToken::Kind::mark) checkMark(i);
            if (token.isWord() && source.codeText(i - 1) != ".") checkWord(i, depth == 0);
            if (token.text == "." && source.codeText(i + 1) == "length" && source.codeText(i + 2) == "(")
                findings.add(kForeignRule, code[i + 1], "GLSL 1.10 has no length() of arrays", "write the number");
        }
        for (const SourceToken& token : source.tokens()) {
            const bool isInMacro = token.isDirective && token.presence == SourceToken::Presence::kept;
            if (isInMacro && token.kind == GlslToken::Kind::number) checkNumber(token);
        }
    }

private:
    void add(const SourceToken& token, const char* instead) {
        findings.add(kForeignRule, token, fmt::format("GLSL 1.10 has no {}", token.text), instead);
    }

    void checkNumber(const SourceToken& token) {
        const std::string& number = token.text;
        const bool isHex = number.starts_with("0x") || number.starts_with("0X");
        const std::size_t end = number.find_last_not_of(isHex ? "uU" : "fFlLuU") + 1;
        const std::string suffix = number.substr(end);
        if (suffix.empty()) return;
        std::string plain = number.substr(0, end);
        if (suffix == "u" || suffix == "U") {
            findings.add(kForeignRule, token, "GLSL 1.10 has no unsigned numbers", fmt::format("write {}", plain));
            return;
        }
        if (plain.find_first_of(".eE") == std::string::npos) plain += ".0";
        findings.add("shader/number-suffix", token, fmt::format("some drivers refuse the suffix of {}", number),
                     fmt::format("write {}", plain));
    }

    void checkMark(std::size_t i) {
        const SourceToken& token = source.code()[i];
        if (const Foreign* const row = FindForeign(kForeignOperators, token.text)) add(token, row->instead);
        const bool isIndex =
            token.text == "[" && i > 0 && HoldsName("float int bool vec2 vec3 vec4", source.codeText(i - 1));
        if (isIndex && source.codeText(source.closing(i) + 1) == "(")
            findings.add(kForeignRule, source.code()[i - 1], "GLSL 1.10 has no lists of an array's elements",
                         "set the elements one by one in a function");
    }

    void checkWord(std::size_t i, bool isGlobal) {
        const SourceToken& token = source.code()[i];
        const std::string& word = token.text;
        if (names.holdsCallable(word) || HoldsName("__LINE__ __FILE__ __VERSION__", word)) return;
        if (source.codeText(i - 1) == "precision") return;  // its line is found already
        const std::string& next = source.codeText(i + 1);
        if (next == "(") {
            if (const Foreign* const row = FindForeign(kCalls, word)) {
                findings.add(kForeignRule, token, fmt::format("GLSL 1.10 has no {}()", word), row->instead);
                return;
            }
        }
        const bool isStart = i == 0 || HoldsName("; } )", source.codeText(i - 1));
        if (isGlobal && isStart && (word == "in" || word == "out")) {
            findings.add(kForeignRule, token, fmt::format("GLSL 1.10 has no variables that are \"{}\"", word),
                         word == "in" ? "the place is gl_TexCoord[0].st" : "the result is gl_FragColor");
        } else if (const Foreign* const row = FindForeign(kWords, word)) {
            add(token, row->instead);
        } else if (isGlobal && isStart && HoldsName(kLaterKeywords, word)) {
            add(token, "delete it");
        } else if (HoldsName(kReserved, word) || HoldsName(kLaterKeywords, word)) {
            reportName(token, fmt::format("some drivers refuse {} as a name", word));
        } else if (word.find("__") != std::string::npos) {
            reportName(token, "some drivers refuse names with two underscores in a row");
        }
    }

    // Once for each name.
    void reportName(const SourceToken& token, const std::string& text) {
        if (reported.insert(token.text).second) findings.add("shader/reserved-name", token, text);
    }

    const ShaderSource& source;
    ShaderFindings& findings;
    const OwnNames names;
    std::set<std::string> reported;
};

}  // namespace

void CheckDialect(const ShaderSource& source, ShaderFindings& findings) {
    Dialect(source, findings).check();
}

}  // namespace quillon::cli
