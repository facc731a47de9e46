#include "gpu/Shader.h"

#include <gmock/gmock.h>

#include <limits>

#include "gpu/RenderTarget.h"
#include "gpu/ShaderLog.h"
#include "support/GLTest.h"

namespace quillon::test {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

const std::string kWhite = "void main() { gl_FragColor = vec4(1.0); }";
const std::string kUnlinked = "float f(float x); void main() { gl_FragColor = vec4(f(1.0)); }";

class NoControls final : public ParametersHolder {};

class ShaderTest : public GLTest {
protected:
    void build(const std::string& source) { shader.initFromName("s", source, L"", none); }
    // One pass into a cleared target of 2 by 2 pixels, of which the first comes back: A, R, G, B.
    std::vector<float> drawn() {
        target.initTarget(2, 2, 32);
        target.bindTarget({});
        if (shader.bind()) shader.render(false);
        const auto floats = ReadBack<float>(target);
        return {floats.begin(), floats.begin() + 4};
    }
    using Pixel = std::vector<float>;
    NoControls none;
    Shader shader;
    RenderTarget target;
};

TEST_F(ShaderTest, SaysWhatFailedAndWhere) {
    build(kUnlinked);
    EXPECT_THAT(shader.errorText, StartsWith("Program linking failed:\n"));
    EXPECT_EQ(shader.fault.kind, ShaderFault::Kind::link);
    const std::string broken =
        "uniform sampler2D s;\nvoid main() { gl_FragColor = texture2D(s, vec2(0.0));\n nonsense; }";
    EXPECT_FALSE(shader.compileSource(broken));
    EXPECT_THAT(shader.errorText, StartsWith("Shader compilation failed:\n"));
    EXPECT_FALSE(shader.compileSource(""));
    EXPECT_THAT(shader.errorText, StartsWith("Shader compilation failed:\n")) << "an empty text changes nothing";
    EXPECT_EQ(shader.source, broken);
    EXPECT_EQ(shader.fault.kind, ShaderFault::Kind::compile);
    ASSERT_FALSE(shader.fault.messages.empty());
    EXPECT_EQ(shader.fault.messages[0].line, 3);
    EXPECT_THAT(shader.fault.messages[0].text, HasSubstr("nonsense"));
    EXPECT_TRUE(shader.compileSource(kWhite));
    EXPECT_EQ(shader.errorText, "");
    EXPECT_EQ(shader.fault.kind, ShaderFault::Kind::none);
    EXPECT_TRUE(shader.fault.messages.empty());
    EXPECT_EQ(shader.source, kWhite);
}

TEST_F(ShaderTest, CutsTheDriversWordsAt4096Bytes) {
    std::string source = "void main() {";
    for (int i = 0; i < 400; ++i) source += " an_undeclared_name_" + std::to_string(i) + " = 1.0;\n";
    build(source + "}");
    EXPECT_LE(shader.errorText.size(), 27u + 4095u);
    EXPECT_GE(shader.errorText.size(), 4000u);
}

TEST_F(ShaderTest, DrawsNothingOnceACompileFailed) {
    build(kWhite);
    EXPECT_EQ(drawn(), (Pixel{1, 1, 1, 1}));
    shader.compileSource("void main() { nonsense }");
    EXPECT_EQ(drawn(), (Pixel{0, 0, 0, 0}));
    target.bindTarget({});
    shader.render(false);
    EXPECT_EQ(ReadBack<float>(target)[0], 0.0f);
}

TEST_F(ShaderTest, SeesOrdinaryColorsAndThePreamblesWords) {
    build("#ifdef QUILLON\nvoid main() { gl_FragColor = vec4(0.5, 2.0, -3.0, 4.0).SWIZZLE; }\n#endif\n");
    EXPECT_EQ(drawn(), (Pixel{0.5f, 2, -3, 4})) << "gbar and the final argb undo each other";
    build("void main() { gl_FragColor = vec4(0.5, 2.0, -3.0, 4.0); }");
    EXPECT_EQ(drawn(), (Pixel{4, 0.5f, 2, -3}));
}

TEST_F(ShaderTest, SurvivesABaseLevelThatNoTextureHas) {
    build("uniform sampler2D s; void main() { gl_FragColor = texture2D(s, vec2(0.5)); }");
    ASSERT_EQ(shader.errorText, "");
    Texture texture;
    texture.initTexture(1, 1, 8, true);
    const std::uint32_t white = 0xFFFFFFFF;
    texture.uploadPixels(&white, {1, 1, 8, 4}, true, false);
    shader.parameterByName("s").setWordValue(texture.textureName.get());
    EXPECT_EQ(drawn(), (Pixel{1, 1, 1, 1}));
    for (const std::int32_t level : {1, 1000, std::numeric_limits<std::int32_t>::max()}) {
        texture.setParameter(GL_TEXTURE_BASE_LEVEL, level);
        EXPECT_EQ(drawn()[1], 0.0f) << level;
    }
}

// Logs of graphics drivers that the tests do not run with.

using enum ShaderMessage::Severity;

struct LogCase {
    const char* name;
    const char* log;
    std::vector<ShaderMessage> messages;
};

// The author's text has three lines. Before them there is one line in the same string, and two in another.
const LogCase kLogs[] = {
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
    for (const auto& [name, log, expected] : kLogs) {
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
