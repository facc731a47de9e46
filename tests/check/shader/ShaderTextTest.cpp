#include <gmock/gmock.h>

#include "cli/check/shader/CheckShaderText.h"

// What is said of a shader by its text.

namespace quillon::cli {
namespace {

using ::testing::ElementsAreArray;

struct TextCase {
    const char* text;
    std::vector<std::string> findings;  // "LINE:COLUMN RULE", the rule without its kind
};

std::vector<std::string> Find(std::string_view text) {
    std::vector<std::string> found;
    for (const Diagnostic& each : CheckShaderText("a.frag", text)) {
        const std::string name = each.rule.substr(each.rule.find('/') + 1);
        if (name == "no-result" && text.find("result") == std::string_view::npos) continue;  // most cases have none
        found.push_back(std::to_string(each.line) + ":" + std::to_string(each.column) + " " + name);
    }
    return found;
}

// Each is the body of a main() on line 2, after declarations.
const TextCase kBodies[] = {
    // Reads that the engine finds, and those that it does not.
    {"gl_FragColor = texture2D(s, p) + texture2D\t(s, p)*-texture2D(s, p);", {}},
    {"gl_FragColor = mix(c,texture2D(s, p), 0.5);", {"2:22 unreached-read"}},
    {"{texture2D(s, p);}", {"2:2 unreached-read"}},
    {"gl_FragColor = texture2D/**/(s, p);", {"2:16 unreached-read"}},
    {"gl_FragColor = mix(c,texture2D(s, p).SWIZZLE, 0.5);", {}},
    {"gl_FragColor = texture2D(s, p).SWIZZLE;", {"2:16 swizzled-twice"}},
    {"gl_FragColor = texture2DProj(s, c.xyw);", {"2:16 unreached-read"}},
    {"gl_FragColor = texture2D(s, vec2(p.x, (p.y)), -1.0);", {"2:16 read-arguments"}},
    {"gl_FragColor = texture2DLod(s, p, 0.0);", {"2:16 lod-read"}},
    {"\n#define READ texture2D\n#define TWO(x) (x,texture2D(s, x))\n#define OWN(x) (x,texture2D(s, x).SWIZZLE)\n",
     {"3:14 unreached-read", "4:19 unreached-read"}},
    // Brackets and characters.
    {"if (a > 0.0) { c = vec4(a);", {"1:90 unmatched-bracket"}},
    {"c = vec4((a);", {"2:9 unmatched-bracket"}},
    {"for (int i = 0; i < 3; ++i) { c[i; }", {"2:32 unmatched-bracket"}},
    {"} void f() {}}", {"2:14 unmatched-bracket"}},
    {"\n#define BEGIN {\nif (a > 0.0) BEGIN c = vec4(a); }", {}},
    {"\n#ifdef GL_EXT_x\n{ }} } }}\n#endif\n", {}},
    {"/* \xC3\xA9 */\tfloat \xC3\xA9\xC3\xA9 = 1.0; float b@ = a;", {"2:15 character", "2:32 character"}},
    {"c = \"red\";", {"2:5 character", "2:9 character"}},
    {"c = vec4(a); /* and so on", {"2:14 unclosed-comment"}},
    // Another language.
    {"highp float x = a; uint n = 1u;", {"2:1 not-in-dialect", "2:20 not-in-dialect", "2:29 not-in-dialect"}},
    {"c = texture(s, p) + texelFetch(s, ivec2(p), 0); float3 x = saturate(c.rgb);",
     {"2:5 not-in-dialect", "2:21 not-in-dialect", "2:49 not-in-dialect", "2:60 not-in-dialect"}},
    {"int i = 5 % 3 & 1; float x[2] = float[2](1.0, 2.0); i = x.length();",
     {"2:11 not-in-dialect", "2:15 not-in-dialect", "2:33 not-in-dialect", "2:59 not-in-dialect"}},
    {"switch (1) { case 1: break; }", {"2:1 not-in-dialect", "2:14 not-in-dialect"}},
    {"float x = 1.0f + 2.lf + 0x1F + 1e3;", {"2:11 number-suffix", "2:18 number-suffix"}},
    {"float sample = a; float input = sample; float my__name = input;",
     {"2:7 reserved-name", "2:25 reserved-name", "2:47 reserved-name"}},
    {"vec4 texture = c; c = texture.rgba; c.r = round(a);", {}},
    {"\n#ifdef GL_ES\nhighp float x = 1.0f;\n#elif __VERSION__ >= 130\nuint y;\n#else\nfloat z = 1.0;\n#endif\n", {}},
    {"\n#if defined(QUILLON) && (2 * 3 == 6 || NONE)\nuint y;\n#endif\n", {"4:1 not-in-dialect"}},
    // Loops.
    {"for (int i = 0; i < N && float(i) < a; ++i) c.r += 1.0;", {}},
    {"for (int i = 0; float(i) < a; ++i) c.r += 1.0;", {"2:1 loop-bound"}},
    {"for (float x = -2.0; x <= float(N) * c.r; x += 1.0) c.r += 1.0;", {"2:1 loop-bound"}},
};

TEST(ShaderText, FindsFaultsInFunctions) {
    const std::string before =
        "uniform sampler2D s; uniform float a; const int N = 3; float round(float x); void main() { ";
    for (const auto& [body, expected] : kBodies) {
        const std::string text = before + "vec2 p; vec4 c;\n" + body + "}\nfloat round(float x) { return x; }\n";
        EXPECT_THAT(Find(text), ElementsAreArray(expected)) << body;
    }
}

const TextCase kTexts[] = {
    {"void main() {}", {}},
    // main()
    {"void main/**/() {}", {"1:6 main-not-wrapped"}},
    {"// here: main (see below)\nvoid main() {}", {"1:10 wrong-main"}},
    {"#if 0\nvoid main() {}\n#else\nvoid main() {}\n#endif", {"2:6 wrong-main"}},
    {"float f() { return 1.0; }", {"0:0 no-main"}},
    {"#define MAIN void main()\nMAIN {}", {}},
    {"float f(float x);\nfloat g(float);\nvoid main() { f(1.0); }", {"1:7 undefined-function"}},
    // Lines of the preprocessor.
    {"#version 120\n  #  include \"a.glsl\"\nvoid main() {}", {"1:1 version-line", "2:3 include-line"}},
    {"#extension GL_X : enable\nvoid main() {}", {"1:1 extension-line"}},
    {"#extension GL_X : enable\nuniform sampler2D s;void main() { gl_FragColor = texture2D(s, vec2(0.0)); }",
     {"1:1 late-extension"}},
    {"#if 0\n#version 120\n#endif\nprecision mediump float;\nvoid main() {}", {"4:1 not-in-dialect"}},
    // Variables.
    {"uniform float a[2], b, unused[2];\nuniform mat3 m; uniform ivec2 i;\nuniform struct S { float x; } t;\n"
     "void main() { a; b; m; i; t; }",
     {"1:15 unfed-uniform", "2:14 unfed-uniform", "2:31 unfed-uniform"}},
    {"struct S { float x; }; uniform S t; uniform samplerCube e, f; uniform float v = 1.0; uniform sampler3D d;\n"
     "void main() { t; e; f; d; }",
     {"1:34 unfed-uniform", "1:77 not-in-dialect", "1:104 unfed-uniform"}},
    {"uniform vec4 Texture0Params;\nuniform sampler2D s;\nuniform vec4 s_Texture0Params;\n"
     "void main() { s; Texture0Params; s_Texture0Params; }",
     {"3:14 late-size"}},
    {"varying vec2 v, unused;\nin vec2 w;\nflat out vec4 c;\nvoid main() { v; w; c; }",
     {"1:14 varying", "2:1 not-in-dialect", "3:1 not-in-dialect"}},
    // Lines and columns.
    {"\xEF\xBB\xBFvoid main() { uint x; }", {"1:1 character", "1:15 not-in-dialect"}},
    {"// \xE2\x82\xAC\r\n\r\n\tuint x;\r\nvoid main() {}", {"3:2 not-in-dialect"}},
    {"// old\rvoid main() {}\r uint x;", {"3:2 not-in-dialect"}},
    {"#define A \\\n 1.0f\n// goes on \\\nuint x;\nvoid main() {}", {"2:2 number-suffix"}},
};

TEST(ShaderText, FindsFaultsInWholeTexts) {
    for (const auto& [text, expected] : kTexts) EXPECT_THAT(Find(text), ElementsAreArray(expected)) << text;
}

}  // namespace
}  // namespace quillon::cli
