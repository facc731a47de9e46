#include "gpu/Shader.h"

#include <gmock/gmock.h>

#include <limits>

#include "gpu/RenderTarget.h"
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

TEST_F(ShaderTest, SaysWhatFailed) {
    build(kUnlinked);
    EXPECT_THAT(shader.errorText, StartsWith("Program linking failed:\n"));
    const std::string broken =
        "uniform sampler2D s;\nvoid main() { gl_FragColor = texture2D(s, vec2(0.0));\n nonsense; }";
    EXPECT_FALSE(shader.compileSource(broken));
    EXPECT_THAT(shader.errorText, StartsWith("Shader compilation failed:\n"));
    EXPECT_FALSE(shader.compileSource(""));
    EXPECT_THAT(shader.errorText, StartsWith("Shader compilation failed:\n")) << "an empty text changes nothing";
    EXPECT_EQ(shader.source, broken);
    EXPECT_THAT(shader.errorText, HasSubstr("nonsense"));
    EXPECT_TRUE(shader.compileSource(kWhite));
    EXPECT_EQ(shader.errorText, "");
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

}  // namespace
}  // namespace quillon::test
