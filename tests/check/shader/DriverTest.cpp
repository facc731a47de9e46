#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "cli/check/shader/ExplainShader.h"
#include "cli/check/shader/ShaderLog.h"
#include "cli/effect/ShaderDriver.h"
#include "gpu/Shader.h"
#include "support/BuiltFiles.h"
#include "support/GLTest.h"

// What is said of a shader by its text and the driver. The words are those of Mesa's software renderer.

namespace quillon::cli {
namespace {

using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

class ShaderDriver : public test::GLTest {
protected:
    static Diagnostics Explain(const std::string& text) {
        Shader shader;
        shader.createProgram();
        shader.compileSource(text);
        const ShaderSource source(text);
        return ExplainShader("a.frag", source, AskDriver(shader, source));
    }
    static std::vector<std::string> Lines(const std::string& text) {
        std::vector<std::string> lines;
        for (const Diagnostic& each : Explain(text)) lines.push_back(FormatDiagnostic(each).substr(7));
        return lines;
    }
};

// Texts with one fault, the undeclared name "nowhere", which is there once.
const char* const kPlacements[] = {
    "void main() { gl_FragColor = vec4(nowhere); }",
    "void main() {\n\tgl_FragColor\t=   vec4( \t nowhere);\n}\n",
    "void main() { /* \xC3\xA9t\xC3\xA9 */ /* two */ gl_FragColor = /**/ vec4(/*\t*/nowhere); }",
    "/* over\n several\n lines */ void main() { gl_FragColor /*\n*/ = vec4(nowhere); }",
    "void main() {\r\n  // done\r\n  gl_FragColor = vec4(nowhere);\r\n}\r\n",
    "void main() {\r  // old\r  gl_FragColor = vec4(nowhere);\r}\r",
    "uniform sampler2D s;\nvoid main() { gl_FragColor = texture2D(s, vec2(0.0)) + texture2D(s, vec2(nowhere)); }",
    "uniform samplerCube s;\nvoid main() { gl_FragColor = textureCube(s, vec3(0.0)) * textureCube(s, vec3(nowhere)); }",
    "#define TWICE(x) (2.0 * (x))\nvoid main() { float a = TWICE(1.0) + TWICE(1.0), b = nowhere; gl_FragColor = "
    "vec4(b); }",
    "#define TWICE(x) (2.0 * (x))\nvoid main() { float a = TWICE(1.0 + nowhere); }",
    "#define SUM(x, y) (x + y)\nvoid main() {\n float a = SUM(1.0,\n  2.0\n  );\n"
    "a = SUM(\n1.0\n, SUM(2.0,\n3.0));\n  a = nowhere;\n}",
    "#define LONG 1.0 + \\\n  2.0\nvoid main() {\n  float a = LONG; \\\n  a = nowhere;\n}",
    "#ifdef QUILLON\nvoid main() {\n#else\nnone\n#endif\n#line 7\n  gl_FragColor = vec4(1.0);\n#line 1\n"
    "  gl_FragColor *= nowhere;\n}",
    "void main() {\n  gl_FragColor = vec4(1.0)\n    * 2.0\n    + vec4(\nnowhere\n);}",
};

TEST_F(ShaderDriver, NamesThePlaceInTheAuthorsText) {
    for (const std::string text : kPlacements) {
        const std::string before = text.substr(0, text.find("nowhere"));
        int line = 1;
        int column = 1;
        for (std::size_t i = 0; i < before.size(); ++i) {
            const bool isEnd = before[i] == '\n' || (before[i] == '\r' && before[i + 1] != '\n');
            line += isEnd;
            column = isEnd ? 1 : column + ((before[i] & 0xC0) != 0x80);
        }
        const Diagnostics found = Explain(text);
        ASSERT_FALSE(found.empty()) << text;
        EXPECT_EQ(found[0].line, line) << text;
        EXPECT_EQ(found[0].column, column) << text;
        EXPECT_EQ(found.size(), 1u) << text;
    }
}

struct WordsCase {
    const char* text;
    std::vector<std::string> lines;
};
const WordsCase kWords[] = {
    {"void main() { gl_FragColor = vec4(1.0); }", {}},
    {"void main() { gl_FragColor = vec4(a) + vec4(b);\n#line 50\n c; }",
     {"1:35: error: `a' undeclared [shader]", "1:45: error: `b' undeclared [shader]",
      "3:2: error: `c' undeclared (in line 51 as #line counts) [shader]"}},
    {"uniform float u;\nvoid main() { float x = 1; x = u * 2 + u; x = max(u, 0); }",
     {"2:15: error: initializer of type int cannot be assigned to variable of type float; write 1.0 for 1: a whole "
      "number does not become a float [shader]",
      "2:32: error: could not implicitly convert operands to arithmetic operator; write 2.0 for 2: a whole number does "
      "not become a float [shader]",
      "2:47: error: no matching function for call to `max(float, int)'; write 0.0 for 0: a whole number does not "
      "become "
      "a float [shader]"}},
    {"void main() { if (true) { gl_FragColor = vec4(1.0); }", {"1:13: error: this \"{\" is never closed [shader]"}},
    {"// main (see below)\nvoid main() {}",
     {"1:4: error: Quillon takes this word for the program's function; write it in another way, such as 'main', where "
      "a "
      "bracket follows it in a comment [shader]"}},
    {"#version 120\nvoid main() {}",
     {"1:1: error: no #version line can be the first: Quillon puts lines in front of it; delete the line: "
      "shaders are GLSL 1.10 [shader]"}},
    {"uniform sampler2D s;\nvoid main() { gl_FragColor = texture(s, vec2(0.0)); }",
     {"2:30: error: GLSL 1.10 has no texture(); use texture2D(picture, place) [shader]"}},
    {"uniform sampler2D s;\nvoid main() { gl_FragColor = texture2D(s, vec2(0.0), 1.0) + x; }",
     {"2:30: error: texture2D takes a picture and a place here, and no bias; leave the third argument out [shader]"}},
    {"uniform sampler2D s;\nvoid main() { gl_FragColor = texture2D(s, 0.0); }",
     {"2:30: error: no matching function for call to `texture2D(sampler2D, float)' [shader]"}},
    {"void main() { float input = 1.0f; }",
     {"1:21: error: this graphics driver refuses input as a name; choose another name [shader]",
      "1:29: warning: some drivers refuse the suffix of 1.0f; write 1.0 [shader]"}},
    {"void main() { float x = y + 1.0f; }",
     {"1:25: error: `y' undeclared [shader]",
      "1:29: warning: some drivers refuse the suffix of 1.0f; write 1.0 [shader]"}},
    {"varying vec2 v;\nvoid main() { gl_FragColor = v.xyxy; }",
     {"1:14: error: nothing gives v a value: Quillon has its own vertex stage; use gl_TexCoord[0].st, or a uniform "
      "[shader]"}},
    {"float f(float x) { return f(x); }\nvoid main() { f(1.0); }",
     {" error: function `float f(float)' has static recursion; use a loop: functions cannot call themselves "
      "[shader]"}},
    {"#define F(a, b) a\nvoid main() { F(1.0); }\n",
     {"2:15: error: macro F invoked with 1 arguments (expected 2) [shader]"}},
    {"#if 1\nvoid main() {}\n", {"1:1: error: Unterminated #if; end it with #endif [shader]"}},
};

TEST_F(ShaderDriver, SaysWhatTheAuthorCanDo) {
    for (const auto& [text, lines] : kWords) EXPECT_THAT(Lines(text), ElementsAreArray(lines)) << text;
}

TEST_F(ShaderDriver, FindsNothingInTheSamples) {
    int count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(test::SourceFolder() / "effects")) {
        if (entry.path().extension() != ".frag") continue;
        std::ifstream file(entry.path(), std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        EXPECT_THAT(Lines(text.str()), IsEmpty()) << entry.path();
        ++count;
    }
    EXPECT_GT(count, 15);
}

// Logs of graphics drivers that the tests do not run with.

using enum ShaderMessage::Severity;

struct LogCase {
    const char* log;
    std::vector<ShaderMessage> messages;
};

const LogCase kLogs[] = {
    {"1(3) : error C1503: undefined variable \"x\"", {{error, 3, "undefined variable \"x\""}}},
    {"0(5) : error C0000: syntax error\n", {{error, 3, "syntax error"}}},  // both strings counted as one
    {"ERROR: 1:4: 'x' : undeclared identifier\nWARNING: 1:2: old\nERROR: 1 error",
     {{error, 4, "'x' : undeclared identifier"}, {warning, 2, "old"}, {error, 0, "1 error"}}},
    {"0:2(1): error: a\n0:6(1): preprocessor error: c", {{error, 0, "a"}, {error, 4, "c"}}},
    {"1:2(3): warning: a\nerror:   indented\n\n  more", {{warning, 2, "a\nindented\n  more"}}},
    {"Something is wrong\nin two lines", {{error, 0, "Something is wrong\nin two lines"}}},
    {"1:99999999999: error: a\n-1:2: error: b", {{error, 0, "1:99999999999: error: a\n-1:2: error: b"}}},
    {"", {}},
    {"\n \r\n", {}},
};

TEST(ShaderLog, IsReadInTheFormsOfTheDrivers) {
    for (const auto& [log, messages] : kLogs) EXPECT_EQ(ReadShaderLog(log, 2), messages) << log;
}

}  // namespace
}  // namespace quillon::cli
