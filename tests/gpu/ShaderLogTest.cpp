#include "gpu/ShaderLog.h"

#include <gtest/gtest.h>

// Logs of graphics drivers that the tests do not run with.

namespace quillon::test {
namespace {

using enum ShaderMessage::Severity;

struct LogCase {
    const char* name;
    const char* log;
    std::vector<ShaderMessage> messages;
};

// The author's text has three lines. Before them there is one line in the same string, and two in another.
const LogCase kCases[] = {
    {"string_and_line_in_brackets",
     "1(3) : error C1503: undefined variable \"x\"",
     {{error, 2, "undefined variable \"x\""}}},
    {"joined_strings", "0(5) : error C0000: syntax error\n", {{error, 2, "syntax error"}}},
    {"severity_in_front",
     "ERROR: 1:4: 'x' : undeclared identifier\nWARNING: 1:2: old\nERROR: 1 error",
     {{error, 3, "'x' : undeclared identifier"}, {warning, 1, "old"}, {error, 0, "1 error"}}},
    {"lines_around_the_authors",
     "0:3(1): error: a\n0:7(1): error: b\n0:6(1): error: c",
     {{error, 0, "a"}, {error, 0, "b"}, {error, 3, "c"}}},
    {"details_below", "1:2(3): warning: a\nerror:   indented\n\n  more", {{warning, 1, "a\nindented\n  more"}}},
    {"free_text", "Something is wrong\nin two lines", {{error, 0, "Something is wrong\nin two lines"}}},
    {"numbers_out_of_range",
     "1:99999999999: error: a\n-1:2: error: b",
     {{error, 0, "1:99999999999: error: a\n-1:2: error: b"}}},
    {"nothing", "", {}},
    {"blank_lines", "\n \r\n", {}},
};

TEST(ShaderLog, IsReadInTheAuthorsLines) {
    constexpr const char* kSource = "uniform sampler2D s;\nvoid main() {\n gl_FragColor = texture2D(s, vec2(0.)); }";
    for (const auto& [name, log, expected] : kCases) {
        const std::vector<ShaderMessage> messages = ReadShaderLog(log, kSource, 2, 1);
        ASSERT_EQ(messages.size(), expected.size()) << name;
        for (std::size_t i = 0; i < messages.size(); ++i) {
            EXPECT_EQ(messages[i].text, expected[i].text) << name;
            EXPECT_EQ(messages[i].line, expected[i].line) << name;
            EXPECT_EQ(messages[i].severity, expected[i].severity) << name;
        }
    }
}

}  // namespace
}  // namespace quillon::test
