#include <cmath>

#include "ImportTest.h"

namespace quillon::test {

namespace {

using Dialect = ImportTest;

struct Row {
    const char* statements;  // they set the vec4 c
    Color expected;
};

// Statements in newer GLSL, or with whole numbers among floats, and the color that they compute.
const Row kConstructs[] = {
    {"float a = 1; float b = 2 * a; a += 3; c = vec4(a > 0, b, pow(a, 2), mod(5, 3.0));", {1, 2, 16, 2}},
    {"c = vec4(half3(3), twice(2), 1 < 2.5 ? 1 : 0.5, clamp(7, 0.0, 4));", {3, 4, 1, 4}},
    {"int i = 17; c = vec4(i % 5, i & 9, i | 6, i ^ 3);", {2, 1, 23, 18}},
    {"int i = 3; i <<= 4; int k = 200 >> 3; i %= 32; c = vec4(i, k, ~i, 5 << 1);", {16, 25, -17, 10}},
    {"int i = 23; i &= ~2; c = vec4(i, -7 & -4, -7 | 2, -7 ^ 12);", {21, -8, -5, -11}},
    {"ivec2 v = ivec2(7, 8) % ivec2(4, 3); c = vec4(v, (ivec2(7, 8) % 4).x, (ivec2(5, -6) >> 1 & 3).y);", {3, 2, 3, 1}},
    {"float a[2] = float[2](1.0, 2.0); float b[2]; b = a; bool e = a == b; b[1] = 5.0; c = vec4(b[0], b[1], e, a != "
     "b);",
     {1, 5, 1, 1}},
    {"float a[3] = float[3](1.0, 2, 3.5); float b[] = float[](4.0, 5.0); c = vec4(a[2], b[1], a.length(), b.length());",
     {3.5f, 5, 3, 2}},
    {"vec2 p[2] = {vec2(1.0, 2.0), vec2(3.0)}; float[2] q; q[1] = 6.0; c = vec4(p[0], p[1].x, q[1]);", {1, 2, 3, 6}},
    {"c = vec4(kTable[0], kTable[1], kRoot, kWide[1].y);", {0.5f, 0.75f, 2, 9}},
    {"int s = 0; for (int i = 0; i < 4; ++i) switch (i) { case 0: s += 1; break; case 1: case 2: s += 10; break; "
     "default: s += "
     "100; } c = vec4(s, chosen(0), chosen(1) + chosen(2), chosen(7));",
     {121, 5, 9, 7}},
    {"c = vec4(round(2.6), roundEven(2.5), trunc(-2.7), round(vec2(1.2, 3.7)).y);", {3, 2, -2, 4}},
    {"c = vec4(tanh(0.5), sinh(1.0), cosh(1.0), tanh(90.0));", {0.46211716f, 1.1752012f, 1.5430807f, 1}},
    {"c = vec4(asinh(2.0), acosh(2.0), atanh(0.5), 2.0f);", {1.4436355f, 1.3169579f, 0.54930614f, 2}},
    {"float whole; float part = modf(-3.25, whole); c = vec4(whole, part, isnan(part) ? 1.0 : 0.0, isinf(part) ? 1.0 : "
     "0.0);",
     {-3, -0.25f, 0, 0}},
    {"c = mix(vec4(1.0), vec4(2.0), bvec4(true, false, true, false));", {2, 1, 2, 1}},
    {"float f = 0.5; vec3 v = f.xxx; c = vec4(v.xy, f.x, (2.0 * f).rrr.b);", {0.5f, 0.5f, 0.5f, 1}},
    {"mat3 m = mat3(2.0, 0.0, 0.0, 0.0, 4.0, 0.0, 1.0, 0.0, 5.0); vec3 v = inverse(m) * vec3(1.0, 2.0, 5.0); c = "
     "vec4(v, "
     "determinant(m));",
     {0, 0.5f, 1, 40}},
    {"mat4 m = mat4(1.0, 2.0, 0.0, 1.0, 0.0, 1.0, 3.0, 0.0, 2.0, 0.0, 1.0, 1.0, 0.0, 1.0, 0.0, 2.0); vec4 v = "
     "vec4(1.0, -2.0, "
     "3.0, 0.5); c = inverse(m) * (m * v);",
     {1, -2, 3, 0.5f}},
    {"mat4 m = mat4(1.0, 2.0, 0.0, 1.0, 0.0, 1.0, 3.0, 0.0, 2.0, 0.0, 1.0, 1.0, 0.0, 1.0, 0.0, 2.0); c = "
     "vec4(determinant(m), "
     "transpose(m)[0].z, mat3(m)[2].x, mat4(mat2(3.0))[3].w);",
     {23, 2, 2, 1}},
    {"mat2 m = outerProduct(vec2(1.0, 2.0), vec2(3.0, 4.0)); c = vec4(m[0], m[1]);", {3, 6, 4, 8}},
    {"c = texelFetch(inputImage, ivec2(1, 2), 0) + 0.0 * textureLod(inputImage, vec2(0.5), 0.0);",
     {0.125f, 0.25f, 0.625f, 1}},
    {"c = vec4(textureSize(inputImage, 0), textureProj(inputImage, vec3(1.5 / 8.0 * 2.0, 2.5 / 6.0 * 2.0, 2.0)).xy);",
     {8, 6, 0.125f, 0.25f}},
    {"float input = 2.0, half = 3.0; c = vec4(input, half, TWO * 2, PI > 3);", {2, 3, 4, 1}},
    {"vec2 v = SAT(vec2(3.0, 0.5)); c = vec4(v, SAT(TWO), TENTH(5.0) + TENTH(TWICE) + TENTH(v.x));", {1, 0.5f, 1, 1}},
    {"int i = 0; vec2 v = RAMP(i, 2, 1.0) + RAMP(vec2(0.0), vec2(1, 4), vec2(1.0, 2.0)); c = vec4(v, RAMP(0, 1, 0.5), "
     "SAT(3));",
     {1.5f, 1, 0.5f, 1}},
    {"Light light = Light(2, vec2(1.0, 3.0)); c = vec4(light.power, light.place, light.power * 2);", {2, 1, 3, 4}},
    {"highp float p = 1.0; const float k = p + sin(0.0); c = vec4(k, texture(inputImage, vec2(1.5 / 8.0, 2.5 / 6.0), "
     "0.0).xyz);",
     {1, 0.125f, 0.25f, 0.625f}},
};

constexpr const char* kBefore = R"(#version 300 es
#extension GL_OES_standard_derivatives : enable
precision highp float;
#define PI 3.14159
#define TWO 2.0
#define SAT(x) clamp(x, 0, 1)
#define RAMP(a, b, v) smoothstep(a, b, v)
#define TENTH(v) ((v) / TEN)
#define TEN (5 * 2)
#define TWICE TWO * 2
const float kTable[2] = float[](0.5, 0.75);
const vec2 kWide[2] = vec2[2](vec2(8.0), vec2(8.0, 9));
const float kRoot = sqrt(4.0);
struct Light { float power; vec2 place; };
float half3(float x) { return x; }
float twice(float x) { return 2 * x; }
int chosen(int i) { switch (i) { case 0: return 5; case 1: { return 6; } case 2: { i = 3; break; } default: return 7; } return i; }
)";

TEST_F(Dialect, NewerConstructsComputeTheSame) {
    std::string body = kBefore;
    for (std::size_t i = 0; i < std::size(kConstructs); ++i)
        body += "void row" + std::to_string(i) + "(out vec4 c) { " + kConstructs[i].statements + " }\n";
    body +=
        "layout(location = 0) out vec4 result;\nvoid main() {\n    int row = int(gl_FragCoord.x) + 8 * "
        "int(gl_FragCoord.y);\n    vec4 c = vec4(0.0);\n";
    for (std::size_t i = 0; i < std::size(kConstructs); ++i)
        body += "    if (row == " + std::to_string(i) + ") row" + std::to_string(i) + "(c);\n";
    import("rows", "rows.fs",
           "/*{\"INPUTS\": [{\"NAME\": \"inputImage\", \"TYPE\": \"image\"}]}*/\n" + body + "    result = c;\n}\n");
    const auto picture = render("rows");
    for (std::size_t i = 0; i < std::size(kConstructs); ++i) {
        for (std::size_t k = 0; k < 4; ++k)
            EXPECT_NEAR(picture[i][k], kConstructs[i].expected[k], 3e-6 * (1 + std::abs(kConstructs[i].expected[k])))
                << kConstructs[i].statements << " channel " << k;
    }
}

TEST_F(Dialect, WhatCannotBeCarriedOverIsRefusedWithItsLine) {
    const std::string head = "/*{ \"INPUTS\": [{\"NAME\": \"inputImage\", \"TYPE\": \"image\"}] }*/\n";
    std::string longFile = head;
    for (int i = 0; i < 10000; ++i) longFile += "// line\n";
    const struct {
        std::string file;
        const char* words;
    } kRows[] = {
        {head + "\nuint h(uint x) { return x; }\nvoid main() {}",
         "x.fs:3: error: uint: the dialect has no unsigned numbers"},
        {head + "void main() { gl_FragColor = textureCube(inputImage, vec3(1.0)); }",
         "x.fs:2: error: textureCube: there are no"},
        {head + "#extension GL_EXT_gpu_shader4 : enable\nvoid main() {}",
         "x.fs:2: error: extension GL_EXT_gpu_shader4"},
        {head + "vec4 f(sampler2D s) { return IMG_PIXEL(s, vec2(1.0)); }\nvoid main() {}",
         "x.fs:2: error: IMG_PIXEL(s, ...)"},
        {head + "float[2] f() { return float[2](1.0, 2.0); }\nvoid main() {}",
         "x.fs:2: error: a function that returns an array"},
        {head + "void main() { int i = 0; switch (i) { case 0: i = 1; case 1: break; } }",
         "x.fs:2: error: a case that runs on"},
        {head + "void main() {\n  gl_FragColor = nothing;\n}", "x.fs:3: error: "},
        {longFile + "void main() { gl_FragColor = missing; }", "x.fs:10002: error: "},
        {head, "x.fs: error: no main()"},
        {"void main() {}", "x.fs:1: error: no JSON header"},
        {"/*{ \"INPUTS\": [\n{\"NAME\": \"a\" \"TYPE\": \"float\"} ]}*/void main() {}",
         "x.fs:2: error: the header is no JSON"},
        {"/*{ \"INPUTS\": [{\"TYPE\": \"float\"}]}*/void main() {}", "x.fs:1: error: input 1 has no NAME"},
        {"/*{ \"INPUTS\": [{\"NAME\": \"a\", \"TYPE\": \"bool\"},\n{\"NAME\": \"a\", \"TYPE\": \"bool\"}]}*/void "
         "main() {}",
         "x.fs:1: error: input \"a\": the name is there twice"},
        {"/*{ \"INPUTS\": [{\"NAME\": \"float\", \"TYPE\": \"bool\"}]}*/void main() {}",
         "input \"float\": no shader can use"},
        {"/*{ \"INPUTS\": [{\"NAME\": \"two words\", \"TYPE\": \"bool\"}]}*/void main() {}",
         "\"two words\": no shader can use"},
        {"/*{ \"INPUTS\": [{\"NAME\": \"a\", \"TYPE\": \"cheese\"}]}*/void main() {}", "type \"cheese\" is unknown"},
        {"/*{ \"PASSES\": [{\"TARGET\": \"t\", \"WIDTH\": \"$nothing/2\"}]}*/void main() {}", "$nothing is no input"},
        {"/*{ \"PASSES\": [{\"TARGET\": \"t\", \"WIDTH\": \"sin(2)\"}]}*/void main() {}", "\"sin\" is unknown here"},
        {"/*{ \"PASSES\": {}}*/void main() {}", "x.fs:1: error: PASSES is no list of objects"},
        {"/*{ \"IMPORTED\": \"t\"}*/void main() {}", "x.fs:1: error: IMPORTED is no list of objects"},
        {"/*{ \"IMPORTED\": {\"t\": {\"PATH\": \"no.png\"}}}*/void main() {}", "there is no file \"no.png\""},
    };
    for (const auto& [file, words] : kRows) {
        writeFile("x.fs", file);
        const ToolRun result = run("new x --from x.fs");
        EXPECT_EQ(result.status, 1) << words;
        EXPECT_NE(result.err.find(words), std::string::npos) << words << "\n" << result.err;
        EXPECT_EQ(list(), (std::vector<std::string>{"in.argb", "layer.argb", "x.fs"})) << words;
    }
    EXPECT_EQ(run("new in.argb --from x.fs").status, 1);
    EXPECT_EQ(run("new x --from missing.fs").status, 1);
}

// Names that scripts, shaders or other formats keep for themselves are names like any other.
TEST_F(Dialect, KeptWordsAreGoodNames) {
    import("default", "new.fs", R"(/*{ "INPUTS": [{"NAME": "class", "TYPE": "float", "DEFAULT": 0.5},
        {"NAME": "input", "TYPE": "image"}, {"NAME": "function", "TYPE": "image"}],
        "PASSES": [{"TARGET": "this_", "WIDTH": "$class*4"}, {}] }*/
        float iTime = class * 1.0;
        void main() { gl_FragColor = IMG_THIS_PIXEL(input) * iTime + 0.0 * IMG_THIS_PIXEL(this_) * TIME; })");
    ExpectPicture(render("default"), [](int x, int y) {
        Color color = Input(x, y);
        for (float& channel : color) channel *= 0.5f;
        return color;
    });
}

}  // namespace

}  // namespace quillon::test
