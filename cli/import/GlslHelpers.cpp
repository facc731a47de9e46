#include "cli/import/GlslHelpers.h"

#include <fmt/format.h>

#include <functional>
#include <vector>

namespace quillon::cli {

namespace {

// TYPE is replaced by each type of `over` in turn, BOOLS by the type of as many truth values.
struct Helper {
    const char* name;
    const char* over;  // "" once, "f" for float to vec4, "i" for ivec2 to ivec4, part by part
    const char* text;
    const char* calls = "";  // another helper
};

// Bits are those of two's complement: numbers below 0 are halved downward.
constexpr Helper kHelpers[] = {
    {"remainder", "", "int remainder(int a, int b) { return a - b * (a / b); }"},
    {"remainderOfVectors", "i", "", "remainder"},
    {"shiftLeft", "", "int shiftLeft(int a, int n) { for (int i = 0; i < 32; ++i) if (i < n) a *= 2; return a; }"},
    {"shiftRight", "",
     "int shiftRight(int a, int n) { for (int i = 0; i < 32; ++i) if (i < n) a = a < 0 ? -((1 - a) / 2) "
     ": a / 2; return a; }"},
    {"shiftLeftOfVectors", "i", "", "shiftLeft"},
    {"shiftRightOfVectors", "i", "", "shiftRight"},
    {"bitAnd", "",
     "int bitAnd(int a, int b) { int sum = 0; int bit = 1; for (int i = 0; i < 31; ++i) { int c = a < 0 ? -((1 - a) / "
     "2) : a / 2; int d = b < 0 ? -((1 - b) / 2) : b / 2; if (a - c * 2 + b - d * 2 == 2) sum += bit; a = c; b = d; "
     "bit *= 2; } return a + b == -2 ? sum - 2147483647 - 1 : sum; }"},
    {"bitAndOfVectors", "i", "", "bitAnd"},
    {"bitOr", "", "int bitOr(int a, int b) { return a + b - bitAnd(a, b); }", "bitAnd"},
    {"bitOrOfVectors", "i", "", "bitOr"},
    {"bitXor", "", "int bitXor(int a, int b) { return a + b - 2 * bitAnd(a, b); }", "bitAnd"},
    {"bitXorOfVectors", "i", "", "bitXor"},
    {"toMat2", "",
     "mat2 toMat2(mat3 m) { return mat2(m[0].xy, m[1].xy); }\n"
     "mat2 toMat2(mat4 m) { return mat2(m[0].xy, m[1].xy); }"},
    {"toMat3", "",
     "mat3 toMat3(mat4 m) { return mat3(m[0].xyz, m[1].xyz, m[2].xyz); }\n"
     "mat3 toMat3(mat2 m) { return mat3(m[0], 0.0, m[1], 0.0, 0.0, 0.0, 1.0); }"},
    {"toMat4", "",
     "mat4 toMat4(mat3 m) { return mat4(m[0], 0.0, m[1], 0.0, m[2], 0.0, 0.0, 0.0, 0.0, 1.0); }\n"
     "mat4 toMat4(mat2 m) { return mat4(m[0], 0.0, 0.0, m[1], 0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, "
     "0.0, 1.0); }"},
    {"mixWhere", "",
     "float mixWhere(float a, float b, bool t) { return t ? b : a; }\n"
     "vec2 mixWhere(vec2 a, vec2 b, bvec2 t) { return vec2(t.x ? b.x : a.x, t.y ? b.y : a.y); }\n"
     "vec3 mixWhere(vec3 a, vec3 b, bvec3 t) { return vec3(t.x ? b.x : a.x, t.y ? b.y : a.y, "
     "t.z ? b.z : a.z); }\n"
     "vec4 mixWhere(vec4 a, vec4 b, bvec4 t) { return vec4(t.x ? b.x : a.x, t.y ? b.y : a.y, "
     "t.z ? b.z : a.z, t.w ? b.w : a.w); }"},
    {"round", "f", "TYPE round(TYPE x) { return floor(x + 0.5); }"},
    {"roundEven", "",
     "float roundEven(float x) { return fract(x) == 0.5 ? 2.0 * floor(0.5 * floor(x + 0.5)) : "
     "floor(x + 0.5); }\n"
     "vec2 roundEven(vec2 x) { return vec2(roundEven(x.x), roundEven(x.y)); }\n"
     "vec3 roundEven(vec3 x) { return vec3(roundEven(x.xy), roundEven(x.z)); }\n"
     "vec4 roundEven(vec4 x) { return vec4(roundEven(x.xy), roundEven(x.zw)); }"},
    {"trunc", "f", "TYPE trunc(TYPE x) { return sign(x) * floor(abs(x)); }"},
    {"modf", "f", "TYPE modf(TYPE x, out TYPE whole) { whole = sign(x) * floor(abs(x)); return x - whole; }"},
    {"tanh", "f", "TYPE tanh(TYPE x) { return 1.0 - 2.0 / (exp(2.0 * x) + 1.0); }"},
    {"sinh", "f", "TYPE sinh(TYPE x) { return 0.5 * (exp(x) - exp(-x)); }"},
    {"cosh", "f", "TYPE cosh(TYPE x) { return 0.5 * (exp(x) + exp(-x)); }"},
    {"asinh", "f", "TYPE asinh(TYPE x) { return sign(x) * log(abs(x) + sqrt(x * x + 1.0)); }"},
    {"acosh", "f", "TYPE acosh(TYPE x) { return log(x + sqrt(x * x - 1.0)); }"},
    {"atanh", "f", "TYPE atanh(TYPE x) { return 0.5 * log((1.0 + x) / (1.0 - x)); }"},
    {"isnan", "",
     "bool isnan(float x) { return !(x <= 0.0 || x >= 0.0); }\n"
     "bvec2 isnan(vec2 x) { return bvec2(isnan(x.x), isnan(x.y)); }\n"
     "bvec3 isnan(vec3 x) { return bvec3(isnan(x.x), isnan(x.y), isnan(x.z)); }\n"
     "bvec4 isnan(vec4 x) { return bvec4(isnan(x.x), isnan(x.y), isnan(x.z), isnan(x.w)); }"},
    {"isinf", "",
     "bool isinf(float x) { return abs(x) > 3.4e38; }\n"
     "bvec2 isinf(vec2 x) { return bvec2(isinf(x.x), isinf(x.y)); }\n"
     "bvec3 isinf(vec3 x) { return bvec3(isinf(x.x), isinf(x.y), isinf(x.z)); }\n"
     "bvec4 isinf(vec4 x) { return bvec4(isinf(x.x), isinf(x.y), isinf(x.z), isinf(x.w)); }"},
    {"transpose", "",
     "mat2 transpose(mat2 m) { return mat2(m[0].x, m[1].x, m[0].y, m[1].y); }\n"
     "mat3 transpose(mat3 m) { return mat3(m[0].x, m[1].x, m[2].x, m[0].y, m[1].y, m[2].y, m[0].z, "
     "m[1].z, m[2].z); }\n"
     "mat4 transpose(mat4 m) { return mat4(m[0].x, m[1].x, m[2].x, m[3].x, m[0].y, m[1].y, m[2].y, "
     "m[3].y, m[0].z, m[1].z, m[2].z, m[3].z, m[0].w, m[1].w, m[2].w, m[3].w); }"},
    {"outerProduct", "",
     "mat2 outerProduct(vec2 a, vec2 b) { return mat2(a * b.x, a * b.y); }\n"
     "mat3 outerProduct(vec3 a, vec3 b) { return mat3(a * b.x, a * b.y, a * b.z); }\n"
     "mat4 outerProduct(vec4 a, vec4 b) { return mat4(a * b.x, a * b.y, a * b.z, a * b.w); }"},
    {"determinant", "",
     "float determinant(mat2 m) { return m[0].x * m[1].y - m[1].x * m[0].y; }\n"
     "float determinant(mat3 m) { return dot(m[0], cross(m[1], m[2])); }\n"
     "float determinant(mat4 m) { return dot(m[0], cofactors(m)); }",
     "cofactors"},
    {"inverse", "",
     "mat2 inverse(mat2 m) { return mat2(m[1].y, -m[0].y, -m[1].x, m[0].x) / (m[0].x * m[1].y - m[1].x * "
     "m[0].y); }\n"
     "mat3 inverse(mat3 m) { vec3 a = cross(m[1], m[2]); vec3 b = cross(m[2], m[0]); vec3 c = "
     "cross(m[0], m[1]); return mat3(a.x, b.x, c.x, a.y, b.y, c.y, a.z, b.z, c.z) / dot(m[0], a); }\n"
     "mat4 inverse(mat4 m) { vec4 a = cofactors(m); vec4 b = -cofactors(mat4(m[1], m[0], m[2], m[3])); "
     "vec4 c = cofactors(mat4(m[2], m[0], m[1], m[3])); vec4 d = -cofactors(mat4(m[3], m[0], m[1], "
     "m[2])); return mat4(a.x, b.x, c.x, d.x, a.y, b.y, c.y, d.y, a.z, b.z, c.z, d.z, a.w, b.w, c.w, "
     "d.w) / dot(m[0], a); }",
     "cofactors"},
    // Of the first column.
    {"cofactors", "",
     "vec4 cofactors(mat4 m) { vec3 r = vec3(m[1].x, m[2].x, m[3].x); vec3 s = vec3(m[1].y, m[2].y, m[3].y); vec3 t = "
     "vec3(m[1].z, m[2].z, m[3].z); vec3 u = vec3(m[1].w, m[2].w, m[3].w); return vec4(dot(s, cross(t, u)), -dot(r, "
     "cross(t, u)), dot(r, cross(s, u)), -dot(r, cross(s, t))); }"},
};

void ReplaceAll(std::string& text, const std::string& word, const std::string& by) {
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + by.size()))
        text.replace(at, word.size(), by);
}

// The helper for whole numbers, for vectors of them.
std::string OfVectors(const std::string& helper) {
    std::string lines;
    std::string parts = fmt::format("{}(a.x, b.x)", helper);
    for (const char part : {'y', 'z', 'w'}) {
        parts += fmt::format(", {}(a.{}, b.{})", helper, part, part);
        const std::string type = fmt::format("ivec{}", part == 'w' ? 4 : part - 'x' + 1);
        lines += fmt::format("{0} {1}({0} a, {0} b) {{ return {0}({2}); }}\n", type, helper, parts);
        lines += fmt::format("{0} {1}({0} a, int b) {{ return {1}(a, {0}(b)); }}\n", type, helper);
    }
    return lines;
}

std::string TextOf(const Helper& helper) {
    const std::string over = helper.over;
    if (over == "i") return OfVectors(helper.calls);
    const std::vector<std::string> types =
        over == "f" ? std::vector<std::string>{"float", "vec2", "vec3", "vec4"} : std::vector<std::string>{""};
    std::string lines;
    for (const std::string& type : types) {
        std::string text = helper.text;
        ReplaceAll(text, "TYPE", type);
        lines += text + "\n";
    }
    return lines;
}

}  // namespace

std::string HelpersFor(const std::set<std::string>& words, const std::set<std::string>& own) {
    std::string text;
    std::set<std::string> written;
    const std::function<void(const std::string&)> write = [&](const std::string& name) {
        if (own.contains(name) || !written.insert(name).second) return;
        for (const Helper& helper : kHelpers) {
            if (name != helper.name) continue;
            if (*helper.calls != '\0') write(helper.calls);
            text += TextOf(helper);
        }
    };
    for (const Helper& helper : kHelpers) {
        if (words.contains(helper.name)) write(helper.name);
    }
    return text;
}

}  // namespace quillon::cli
