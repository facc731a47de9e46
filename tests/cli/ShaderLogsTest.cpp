#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "cli/effect/ShaderFaults.h"

// Logs of graphics drivers that are not there when the tests run.

namespace quillon::cli {

namespace {

struct LogCase {
    const char* name;
    const char* log;
    const char* told;
};

// "glow.frag" has three lines, in front of which the engine puts one line and, in a string of its own, two.
constexpr LogCase kCases[] = {
    {"string_and_line_in_brackets", "1(3) : error C1503: undefined variable \"x\"",
     "fx/glow.frag:2: error: undefined variable \"x\" [shader]\n"},
    {"joined_strings", "0(5) : error C0000: syntax error", "fx/glow.frag:2: error: syntax error [shader]\n"},
    {"severity_in_front", "ERROR: 1:4: 'x' : undeclared identifier\nWARNING: 1:2: old\nERROR: 1 error",
     "fx/glow.frag:3: error: 'x' : undeclared identifier [shader]\n"
     "fx/glow.frag:1: warning: old [shader]\n"
     "fx/glow.frag: error: 1 error [shader]\n"},
    {"lines_around_the_authors", "0:3(1): error: a\n0:7(1): error: b\n0:6(1): error: c",
     "fx/glow.frag: error: a [shader]\n"
     "fx/glow.frag: error: b [shader]\n"
     "fx/glow.frag:3: error: c [shader]\n"},
    {"nothing_known", "",
     "fx/glow.frag: error: Shader compilation failed: the graphics driver gave no reason [shader]\n"},
    {"free_text", "Something is wrong\nin two lines",
     "fx/glow.frag: error: Something is wrong in two lines [shader]\n"},
};

class ShaderLogs : public ::testing::TestWithParam<LogCase> {};

TEST_P(ShaderLogs, AreToldInTheAuthorsLines) {
    constexpr const char* kText = "uniform sampler2D s;\nvoid main() {\n gl_FragColor = texture2D(s, vec2(0.)); }";
    EffectSource source{"fx", {{"glow.frag", std::vector<std::byte>(std::strlen(kText))}}};
    std::memcpy(source.files[0].bytes.data(), kText, std::strlen(kText));
    // A leading folder does not count, as it does not for the engine.
    const std::string errors = std::string("Shader \"x/glow\"\nShader compilation failed:\n") + GetParam().log + "\n";
    EXPECT_EQ(EffectFault(ExplainShaderErrors(errors, source)).text, GetParam().told);
}

INSTANTIATE_TEST_SUITE_P(Drivers, ShaderLogs, ::testing::ValuesIn(kCases),
                         [](const auto& test) { return test.param.name; });

TEST(ShaderLogsOfSeveralShaders, AreKeptApartAndToldOnce) {
    const EffectSource source{"fx", {}};
    const std::string errors =
        "Shader \"a\"\nShader file not found or shader is empty!\n"
        "Shader \"b\"\nProgram linking failed:\nerror: Shader \"a\"\n\n"
        "Shader \"a\"\nShader file not found or shader is empty!\n";
    EXPECT_EQ(EffectFault(ExplainShaderErrors(errors, source)).text,
              "fx/a.frag: error: no such file; QL_initShader(\"a\") needs it, or a text [shader]\n"
              "fx/fx.js: error: shader \"b\": Shader \"a\" [shader]\n");
}

}  // namespace

}  // namespace quillon::cli
