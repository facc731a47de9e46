#include "entities/Context.h"
#include "support/EngineTest.h"

namespace quillon::test {
namespace {

const char* const kCounting =
    "var calls = 0, p; function setup() { p = QL_initParam('p', 1, 'P'); QL_setParamValue(p, 3);"
    " QL_initParam('l', 4, 'L'); }\n"
    "function preRender() { ++calls; } function draw() { ++calls; } function updateUIFlags() { ++calls; }";

class IdleEngine : public EngineTest {
protected:
    // Every operation on an instance, none of which may do anything.
    void expectNoInstance() {
        std::uint32_t width = 7, height = 8;
        engine.preRender(100, 50, &width, &height);
        EXPECT_EQ(width, 7u);
        EXPECT_EQ(height, 8u);
        const std::uint32_t pixel[4] = {};
        const bool locked = engine.lockGL();
        engine.setLayerPixels(kInputLayer, pixel, 1, 1, 8, 4);
        engine.setLayerPixels(0, pixel, 1, 1, 8, 4);
        engine.draw(5, 2, 2, 8, 1);
        EXPECT_EQ(engine.mapResult(), nullptr);
        engine.unmapResult(nullptr);
        if (locked) engine.unlockGL();
        engine.updateUIFlags();
        engine.setInputOrigin(3, 4);
        EXPECT_EQ(engine.setParameterValue(0, pixel), nullptr);
    }
};

TEST_F(IdleEngine, AnswersBeforeItIsStarted) {
    EXPECT_TRUE(engine.isReady());
    EXPECT_FALSE(engine.lockGL());
    engine.unlockGL();
    EXPECT_EQ(engine.parameterCount(), 0u);
    EXPECT_EQ(engine.parameterInfo(0)->id, 0u);
    EXPECT_EQ(engine.parameterValue(0xFFFFFFFF)->id, 0u);
    EXPECT_EQ(shaderErrors(), "");
    engine.destroySequence(nullptr);
    engine.selectSequence(nullptr);
    engine.shutdown();
    expectNoInstance();
}

TEST_F(IdleEngine, DoesNothingWithoutASelectedInstance) {
    start(kCounting);
    expectNoInstance();
    SequenceHandle* const handle = addInstance();
    engine.selectSequence(nullptr);
    expectNoInstance();
    EXPECT_EQ(eval("[calls, QL_getTime(), QL_getSequenceRT(), QL_getSequenceTexture(), QL_getInputOrigin()]"),
              "[0,0,0,0,[0,0]]");
    EXPECT_EQ(engine.parameterCount(), 2u);
    EXPECT_EQ(engine.parameterInfo(0)->floatAt(0), 3.0f) << "the last instance's controls can be looked at";
    engine.setContextExtent(3, 4, 2);
    EXPECT_EQ(eval("QL_getContextExtent()"), "[3,4,2]");
    SequenceHandle* const other = addInstance();
    engine.selectSequence(handle);
    removeInstance(handle);
    // Live handles where the ended one was: the engine must not look there.
    std::vector<std::unique_ptr<SequenceHandle>> blocks;
    for (int i = 0; i < 20; ++i) blocks.push_back(std::make_unique<SequenceHandle>(*other));
    expectNoInstance();
    EXPECT_EQ(eval("calls"), "0");
}

TEST_F(IdleEngine, KnowsNoInstanceAfterARestart) {
    start(kCounting);
    SequenceHandle* const old = addInstance();
    frame(2, 2, 8);
    engine.selectSequence(nullptr);
    expectNoInstance();  // not even the frame that is there
    EXPECT_TRUE(engine.restartScript());
    for (const bool reselected : {false, true}) {
        if (reselected) engine.selectSequence(old);
        expectNoInstance();
    }
    EXPECT_EQ(eval("calls"), "0");
    // A new instance gets the slot of the old one, whose handle then ends only itself.
    SequenceHandle* const fresh = addInstance();
    EXPECT_EQ(fresh->slot, old->slot);
    engine.selectSequence(old);
    expectNoInstance();
    removeInstance(old);
    engine.selectSequence(fresh);
    EXPECT_EQ(frame(2, 2, 8).size(), 16u);
    EXPECT_EQ(eval("calls"), "1");
}

}  // namespace
}  // namespace quillon::test
