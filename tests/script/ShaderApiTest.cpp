#include "support/EngineTest.h"
#include "support/Pixels.h"

namespace quillon::test {
namespace {

const char* const kKinds =
    "uniform float f;\nuniform vec2 v2;\nuniform vec3 v3;\nuniform vec4 v4;\nuniform bool b;\nuniform int i;\n"
    "uniform mat4 m;\nuniform float list[4];\nuniform float single[1];\nuniform sampler2D tex;\n"
    "void main() { vec4 c = texture2D(tex, v2) * f + vec4(v3, float(i)) + m * v4 + list[i] + single[0];\n"
    "  gl_FragColor = b ? c : v4; }\n";

class ShaderApi : public EngineTest {
protected:
    void SetUp() override {
        start(
            "var body = function () {}, drawn = 0;\n"
            "function setup() { QL_initParam('l', 4, 'L'); }\n"
            "function draw() { ++drawn; body(); }\n",
            {{"paint.frag", "uniform vec4 paint;\nvoid main() { gl_FragColor = paint; }"},
             {"kinds.frag", kKinds},
             {"empty.frag", ""}});
        addInstance();
    }
};

TEST_F(ShaderApi, BuildsFromTheTextOrElseFromTheFileOfTheName) {
    expectValues({
        {"QL_initShader()", "0"},
        {"[QL_initShader('paint'), QL_initShader('paint', undefined), QL_initShader('PAINT', '')]",
         "[33554433,33554434,33554435]"},
        {"QL_initShader('paint', 'undefined')", "33554436"},
        {"QL_initShader('any', 'void main() { gl_FragColor = vec4(1.0); }')", "33554437"},
    });
    EXPECT_EQ(shaderErrors(), "");
    EXPECT_EQ(eval("QL_getShaderError(33554436)"), "\"\"");
}

TEST_F(ShaderApi, GivesAnIdAndTheReasonWhenABuildFails) {
    const char* const kMissing = "\"Shader file not found or shader is empty!\"";
    expectValues({
        {"QL_initShader('none')", "33554433"},
        {"QL_getShaderError(33554433)", kMissing},
        {"QL_getShaderError(QL_initShader('empty'))", kMissing},
        {"QL_getShaderError(QL_initShader('broken', 'void main() { nonsense }')).slice(0, 27)",
         "\"Shader compilation failed:\\n\""},
        {"QL_getShaderError(QL_initShader('unlinked', 'float f(float x); void main()"
         " { gl_FragColor = vec4(f(1.0)); }')).slice(0, 24)",
         "\"Program linking failed:\\n\""},
        {"QL_getShaderError(0x2000099)", "\"\""},
    });
    for (const char* id : {"0", "undefined", "0x1000001", "0x3000001", "0x4000001", "-1", "'x'"})
        EXPECT_EQ(eval("QL_getShaderError(" + std::string(id) + ")"), "\"Id is not a shader!\"") << id;
}

TEST_F(ShaderApi, GivesTheKindOfAUniform) {
    ASSERT_EQ(eval("s = QL_initShader('kinds')"), "33554433");
    ASSERT_EQ(shaderErrors(), "");
    expectValues({
        {"['f', 'v2', 'v3', 'v4', 'b', 'i', 'tex', 'single[0]'].map(function (n) {"
         " return QL_getShaderParamType(s, n); })",
         "[1,5,2,3,8,9,4,1]"},
        {"['m', 'list', 'list[0]', 'list[1]', 'single', 'F', '', 'none'].map(function (n) {"
         " return QL_getShaderParamType(s, n); })",
         "[0,0,0,0,0,0,0,0]"},
        {"[QL_getShaderParamType(0, 'f'), QL_getShaderParamType(0x2000099, 'f'), QL_getShaderParamType(),"
         " QL_getShaderParamType(QL_initShader('none'), 'f'), QL_getShaderParamType(0x3000001, 'f')]",
         "[0,0,0,0,0]"},
    });
}

TEST_F(ShaderApi, RefusesToRenderWithoutAShaderAndATarget) {
    expectValues({
        {"(s = QL_initShader('paint'), rt = QL_initRenderTarget(2, 2, 8), 0)", "0"},
        {"[QL_renderShader(s, rt), QL_renderShader(s, rt, true, [0, 0, 1, 1])]", "[true,true]"},
        {"[QL_renderShader(s, 5), QL_renderShader(s, 67108865), QL_renderShader(s, s), QL_renderShader(s)]",
         "[false,false,false,false]"},
        {"[QL_renderShader(rt, rt), QL_renderShader(0, rt), QL_renderShader(0x2000099, rt), QL_renderShader()]",
         "[false,false,false,false]"},
        // Nothing is drawn, yet nothing is refused: a target that is not ready, a built shader that failed.
        {"QL_renderShader(s, 0x30000FF)", "true"},
        {"QL_renderShader(QL_initShader('none'), rt)", "true"},
        {"QL_renderShader(QL_initShader('broken', 'void main() { nonsense }'), rt)", "true"},
    });
}

// The alpha channel of a 4 by 4 output, y = 0 first, after a pass of zeros and one of ones with the viewport.
TEST_F(ShaderApi, DrawsIntoTheViewportOrTheWholeTarget) {
    eval(
        "(s = QL_initShader('paint'), pass = function (v, viewport) { QL_setShaderParamVal(s, 'paint', [v, v, v, v]);"
        " QL_renderShader(s, QL_getSequenceRT(), false, viewport); }, 0)");
    const std::string whole(16, '1');
    const std::string middle = "0000011001100000";
    for (const auto& [viewport, expected] :
         std::initializer_list<std::pair<std::string, std::string>>{{"undefined", whole},
                                                                    {"[1, 1, 2, 2]", middle},
                                                                    {"[0, 0, 0, 10]", whole},
                                                                    {"[1, 1]", whole},
                                                                    {"{0: 1, 1: 1, 2: 2, 3: 2}", whole}}) {
        eval("body = function () { pass(0); pass(1, " + viewport + "); }");
        std::string alphas;
        const Bytes mapped = frame(4, 4, 8);
        for (std::size_t i = 0; i < mapped.size(); i += 4) alphas += mapped[i] == std::byte{255} ? '1' : '0';
        EXPECT_EQ(alphas, expected) << viewport;
    }
}

TEST_F(ShaderApi, StopsAllDrawingWhileAShaderFailsUntilItIsReleased) {
    start(
        "var bad, drawn = 0, asked = 0, refreshed = 0, heal = false;\n"
        "function setup() { bad = QL_initShader('none'); }\n"
        "function preRender(w, h, x) { ++asked; if (heal) QL_release(bad); }\n"
        "function updateUIFlags() { ++refreshed; }\n"
        "function draw() { ++drawn; }\n");
    addInstance();
    std::uint32_t width = 0, height = 0;
    engine.preRender(4, 4, &width, &height);
    engine.updateUIFlags();
    EXPECT_EQ(frame(2, 2, 8).size(), 16u) << "the frame is the target's fresh storage";
    EXPECT_EQ(eval("[drawn, asked, refreshed]"), "[0,1,1]");
    EXPECT_EQ(shaderErrors(), "Shader \"none\"\nShader file not found or shader is empty!\n");
    eval("heal = true");
    engine.preRender(4, 4, &width, &height);
    frame(2, 2, 8);
    EXPECT_EQ(eval("[drawn, asked, refreshed]"), "[1,2,1]");
    EXPECT_EQ(shaderErrors(), "");
    engine.shutdown();  // the leak checker does not see how the driver refers to the overlay's glyphs
}

}  // namespace
}  // namespace quillon::test
