#include "WindowSystemCalls.h"
#include "gpu/OpenGLContext.h"
#include "support/EngineTest.h"
#include "support/Pixels.h"

namespace quillon::test {
namespace {

// A script that uses everything of GL, whether there is any or not.
const char* const kBusy =
    "var drawn = 0, s, rt, t, results; function setup() { s = QL_initShader('copy'); rt = QL_initRenderTarget(4, 4, "
    "32);"
    " t = QL_initTexture('none'); QL_initParam('l', 4, 'L'); }\n"
    "function draw() { ++drawn; results = [QL_getSurfaceDim(rt), QL_setShaderParamVal(s, 'sInput0', t),"
    " QL_renderShader(s, rt, true), QL_blitRenderTarget(rt, rt, false, false), QL_setTextureParam(rt, 10241, 9728),"
    " QL_surfaceCopyTo(QL_textureToSurface(rt), rt, true)]; }\n";

class WindowSystem : public EngineTest {
protected:
    // What a frame must survive without GL: nothing is mapped, and there is no lock.
    void expectNoPicture() {
        EXPECT_TRUE(engine.isReady());
        EXPECT_FALSE(engine.lockGL());
        SequenceHandle* const instance = addInstance();
        const Bytes picture = DistinctPicture(2, 2, 16);
        engine.setLayerPixels(kInputLayer, picture.data(), 2, 2, 16, 16);
        engine.setLayerPixels(0, picture.data(), 2, 2, 16, 16);
        std::uint32_t width = 0, height = 0;
        engine.preRender(3, 4, &width, &height);
        engine.updateUIFlags();
        for (int i = 0; i < 6; ++i) engine.draw(i, 2, 2, 16, 1);
        EXPECT_EQ(engine.mapResult(), nullptr);
        engine.unmapResult(nullptr);
        removeInstance(instance);
        EXPECT_TRUE(engine.restartScript());
        engine.shutdown();
    }
};

TEST_F(WindowSystem, MayRefuseTheContextAndTheScriptRunsWithoutGL) {
    RefuseContexts(true);
    const TestEffect effect({{"fx.js", kBusy}, {"copy.frag", kCopyFragment}, {"config.xml", kConfig}});
    EXPECT_TRUE(engine.init(effect.module(), nullptr));
    RefuseContexts(false);
    EXPECT_EQ(engine.parameterCount(), 1u);
    EXPECT_EQ(eval("[s, rt, t]"), "[33554433,50331649,67108865]");
    EXPECT_EQ(eval("(QL_release(s), draw(), results)"), "[false,false,false,false,false,false]");
    expectNoPicture();
}

TEST_F(WindowSystem, MayLackGLAltogetherAndTheEngineSaysSo) {
    LoseWindowSystem();
    const TestEffect effect({{"fx.js", kBusy}, {"copy.frag", kCopyFragment}, {"config.xml", kConfig}});
    // A window that cannot be made throws; without any OpenGL no window is made.
    const auto start = [&] {
        try {
            return engine.init(effect.module(), nullptr);
        } catch (const OpenGLFault& fault) {
            EXPECT_EQ(fault.code, 1);
            return false;
        }
    };
    EXPECT_FALSE(start());
    EXPECT_EQ(engine.parameterCount(), 0u);
    EXPECT_EQ(engine.effectFlags(), 33554464u);
    expectNoPicture();
}

}  // namespace
}  // namespace quillon::test
