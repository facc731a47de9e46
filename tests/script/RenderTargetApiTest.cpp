#include "support/EngineTest.h"
#include "support/Pixels.h"

namespace quillon::test {
namespace {

class RenderTargetApi : public EngineTest {
protected:
    void SetUp() override {
        start(
            "var body = function () {}, early;\n"
            "function setup() { early = [QL_getSequenceRT(), QL_getSequenceTexture()]; QL_initParam('l', 4, 'L'); }\n"
            "function preRender(w, h, x) { early.push(QL_getSequenceRT()); }\n"
            "function draw() { body(); }\n",
            {{"paint.frag", "uniform vec4 paint;\nvoid main() { gl_FragColor = paint; }"}});
        addInstance();
    }
};

TEST_F(RenderTargetApi, GivesExtentAndDepthOfTargetsAndTextures) {
    expectValues({
        {"QL_initRenderTarget(640, 360, 16)", "50331649"},
        {"QL_getSurfaceDim(50331649)", "[640,360,16]"},
        {"QL_getSurfaceDim(QL_initRenderTarget(2.9, '3', 32))", "[2,3,32]"},
        {"QL_getSurfaceDim(QL_initRenderTarget(0, 0, 8))", "[0,0,8]"},
        {"QL_getSurfaceDim(QL_initRenderTarget(64, 64))", "[64,64,0]"},
        {"typeof QL_initRenderTarget(-1, -1, 8)", "\"number\""},
        {"QL_getSurfaceDim(67108865)", "[2,2,8]"},
        // Anything else has no extent.
        {"[0, undefined, 5, 0x1000001, 0x2000001, 0x3000099, 0x4000002, 0x5000001, -1, QL_initSurface(4, 4, 8),"
         " QL_initTexture('none.png')].some(QL_getSurfaceDim)",
         "false"},
    });
}

TEST_F(RenderTargetApi, BlitsBetweenUsableTargetsOnly) {
    EXPECT_EQ(eval("(a = QL_initRenderTarget(2, 2, 8), b = QL_initRenderTarget(4, 4, 32), t = 67108865, 0)"), "0");
    expectValues({
        {"[QL_blitRenderTarget(a, b), QL_blitRenderTarget(b, a, true, true)]", "[true,true]"},
        {"QL_blitRenderTarget(a, QL_initRenderTarget(0, 0, 8), false, false)", "true"},
        {"[QL_blitRenderTarget(a, t), QL_blitRenderTarget(t, a), QL_blitRenderTarget(t, t)]", "[false,false,false]"},
        {"[QL_blitRenderTarget(a, 0), QL_blitRenderTarget(0x30000FF, a), QL_blitRenderTarget()]",
         "[false,false,false]"},
        {"QL_blitRenderTarget(a, a, false, false)", "true"},
    });
}

TEST_F(RenderTargetApi, HasNoIdsOfAnInstanceBeforeItsFirstFrameAndKeepsThemAfter) {
    std::uint32_t width = 0, height = 0;
    engine.preRender(2, 2, &width, &height);
    expectValues({{"early", "[0,0,0]"}, {"[QL_getSequenceRT(1), QL_getSequenceTexture(1)]", "[0,0]"}});
    frame(2, 2, 8);
    expectValues({{"rt = QL_getSequenceRT()", "50331649"}, {"QL_getSequenceTexture()", "0"}});
    const Bytes picture = DistinctPicture(3, 4, 16);
    frame(3, 4, 16, picture);
    expectValues({{"QL_getSequenceRT() === rt", "true"},
                  {"QL_getSurfaceDim(rt)", "[3,4,16]"},
                  {"QL_getSequenceTexture()", "67108866"},
                  {"QL_getSurfaceDim(QL_getSequenceTexture())", "[3,4,16]"}});
    addInstance();
    EXPECT_EQ(eval("[QL_getSequenceRT(), QL_getSequenceTexture()]"), "[0,0]");
    frame(1, 1, 8, DistinctPicture(1, 1, 8));
    EXPECT_EQ(eval("[QL_getSequenceRT(), QL_getSequenceTexture()]"), "[50331650,67108867]");
}

// A target of 1 by 2, black below and white above, blitted into an output of 1 by 4: the red channel, y = 0 first.
TEST_F(RenderTargetApi, ReadsFlipAndLinearAsTruth) {
    ASSERT_EQ(eval("(s = QL_initShader('paint'), a = QL_initRenderTarget(1, 2, 8), fill = function (v, y) {"
                   " QL_setShaderParamVal(s, 'paint', [v, v, v, v]); return QL_renderShader(s, a, false, [0, y, 1, 1]);"
                   "}, [fill(0, 0), fill(1, 1)])"),
              "[true,true]");
    ASSERT_EQ(shaderErrors(), "");
    const auto blitted = [&](const std::string& arguments) {
        eval("body = function () { QL_blitRenderTarget(a, QL_getSequenceRT()" + arguments + "); }");
        std::vector<int> reds;
        const Bytes mapped = frame(1, 4, 8);
        for (std::size_t i = 1; i < mapped.size(); i += 4) reds.push_back(std::to_integer<int>(mapped[i]));
        return reds;
    };
    const std::vector<int> upright = {0, 0, 255, 255}, flipped = {255, 255, 0, 0};
    EXPECT_EQ(blitted(""), upright);
    EXPECT_EQ(blitted(", 0, ''"), upright);
    EXPECT_EQ(blitted(", 'false', 0"), flipped);
    const std::vector<int> smooth = blitted(", false, 'false'");
    ASSERT_EQ(smooth.size(), 4u);
    EXPECT_NEAR(smooth[1], 64, 1);
    EXPECT_NEAR(smooth[2], 191, 1);
}

}  // namespace
}  // namespace quillon::test
