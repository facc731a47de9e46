#include <thread>

#include "entities/Context.h"
#include "support/EngineTest.h"
#include "support/Pixels.h"

namespace quillon::test {
namespace {

class FrameOperations : public EngineTest {
protected:
    using Size = std::pair<std::uint32_t, std::uint32_t>;
    Size preRender(std::uint32_t width, std::uint32_t height) {
        Size out = {77, 78};
        engine.preRender(width, height, &out.first, &out.second);
        return out;
    }
};

TEST_F(FrameOperations, AskTheScriptForTheOutputSize) {
    start(
        "var seen, body = function () {}; function setup() {}\n"
        "function preRender(w, h, x) { seen = [w, h, x, arguments.length]; body(w, h); }\n"
        "function draw() { QL_setOutputExtent(5, 5); }");
    addInstance();
    const struct {
        const char* body;
        Size input, output;
    } kCases[] = {
        {"QL_setOutputExtent(200, 0)", {100, 50}, {200, 50}},
        {"QL_setOutputExtent(0, 100)", {640, 360}, {640, 100}},
        {"QL_setOutputExtent(w * 2.5, '30')", {5, 6}, {12, 30}},
        {"QL_setOutputExtent(7, 7); QL_setOutputExtent(0, 0)", {5, 6}, {5, 6}},
        {"QL_setOutputExtent(8, 9); throw 1", {5, 6}, {8, 9}},
        {"nonsense()", {5, 6}, {5, 6}},
        {"QL_setOutputExtent(-5, 9)", {5, 6}, {4294967291u, 9}},
        {"", {0, 0}, {0, 0}},
    };
    for (const auto& [body, input, output] : kCases) {
        eval("body = function (w, h) { " + std::string(body) + " }");
        EXPECT_EQ(preRender(input.first, input.second), output) << body;
        frame(2, 2, 8);  // what it states comes too late for this frame, and is forgotten by the next
    }
    preRender(4294967295u, 2147483648u);
    EXPECT_EQ(eval("seen"), "[-1,-2147483648,1,3]");
}

TEST_F(FrameOperations, StoreValuesOfAnythingButLayers) {
    start("var ids = []; function setup() { for (var k = 0; k <= 12; ++k) ids.push(QL_initParam('u' + k, k, 'U')); }");
    SequenceHandle* const first = addInstance();
    addInstance();
    const float value[4] = {1, 2, 3, 4};
    for (std::uint32_t kind = 0; kind <= 12; ++kind) {
        Parameter* const parameter = engine.setParameterValue(kind, value);
        ASSERT_NE(parameter, nullptr);
        EXPECT_EQ(parameter, engine.parameterInfo(kind));
        EXPECT_EQ(parameter->id, 0x1000001 + kind);
        for (int i = 0; i < 4; ++i) EXPECT_EQ(parameter->floatAt(i), kind == LAYER ? 0 : value[i]) << kind;
    }
    EXPECT_EQ(eval("[QL_getParamValue(ids[1]), QL_getParamValue(ids[3])]"), "[1,[1,2,3,4]]");
    for (const std::uint32_t none : {13u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        Parameter* const missing = engine.setParameterValue(none, value);
        ASSERT_NE(missing, nullptr);
        EXPECT_EQ(missing->id, 0u);
        EXPECT_EQ(missing->floatAt(0), 0.0f) << "the null record stays as it is";
    }
    engine.selectSequence(first);
    EXPECT_EQ(eval("QL_getParamValue(ids[1])"), "0");
}

TEST_F(FrameOperations, GiveTheTargetsFreshStorageWhenTheScriptDrawsNothing) {
    start("function setup() {}");  // and no draw()
    addInstance();
    EXPECT_EQ(frame(3, 2, 8).size(), 24u);
    EXPECT_EQ(frame(3, 2, 16).size(), 48u);
    EXPECT_EQ(frame(3, 2, 32).size(), 96u);
    ASSERT_TRUE(engine.lockGL());
    for (const auto& [width, bits] : {std::pair{3u, 0u}, {0u, 8u}}) {  // a host that could not tell, an empty layer
        engine.draw(0, width, 2, bits, 1);
        EXPECT_EQ(engine.mapResult(), nullptr);
    }
    engine.unlockGL();
    EXPECT_EQ(frame(3, 2, 8).size(), 24u);
}

// A caller reads as many bytes as the frame that it asked for has.
TEST_F(FrameOperations, HandOutNoFrameThatTheScriptMadeSmaller) {
    start("var body; function setup() {} function draw() { body(QL_getSequenceRT()); }");
    addInstance();
    for (const char* body :
         {"QL_surfaceCopyTo(QL_initSurface(8, 1, 8), rt)", "QL_surfaceCopyTo(QL_initSurface(8, 8, 8), rt)",
          "QL_release(rt); QL_initRenderTarget(8, 7, 32)", "QL_release(rt)"}) {
        eval("body = function (rt) { " + std::string(body) + "; }");
        ASSERT_TRUE(engine.lockGL());
        engine.draw(0, 8, 8, 32, 1);
        EXPECT_EQ(engine.mapResult(), nullptr) << body;
        engine.unlockGL();
    }
    eval("body = function () {}");
    EXPECT_EQ(frame(8, 8, 32).size(), 1024u);
}

TEST_F(FrameOperations, IgnoreALayerWithoutPixelsOrRows) {
    start("function setup() { QL_initParam('l', 4, 'L'); } function draw() {}");
    addInstance();
    ASSERT_TRUE(engine.lockGL());
    const std::uint32_t pixel[4] = {};
    for (const std::uint32_t index : {kInputLayer, 0u}) {
        engine.setLayerPixels(index, nullptr, 4, 4, 8, 16);
        engine.setLayerPixels(index, pixel, 4, 4, 8, 0);
    }
    for (const std::uint32_t none : {1u, 0x7FFFFFFFu, 0xFFFFFFFEu}) engine.setLayerPixels(none, pixel, 1, 1, 8, 4);
    engine.unlockGL();
    EXPECT_EQ(eval("[QL_getSequenceTexture(), QL_getSurfaceDim(67108865), QL_getSurfaceDim(67108866)]"),
              "[0,[2,2,8],false]");
    EXPECT_EQ(engine.parameterInfo(0)->wordValue(), 0u);
}

TEST_F(FrameOperations, ShareALayersPixelsButNameThemToOneInstance) {
    start(
        "var l, t; function setup() { l = QL_initParam('l', 4, 'L'); t = QL_initParam('t', 6, 'T');"
        " QL_initParam('f', 1, 'F'); } function draw() {}");
    SequenceHandle* const first = addInstance();
    SequenceHandle* const second = addInstance();
    const Bytes picture = DistinctPicture(3, 2, 16);
    const auto upload = [&](std::uint32_t index) {
        ASSERT_TRUE(engine.lockGL());
        engine.setLayerPixels(index, picture.data(), 3, 2, 16, 24);
        engine.unlockGL();
    };
    upload(0);
    const std::uint32_t name = Context::Instance().FindTexture(0x4000001).textureName.get();
    EXPECT_EQ(engine.parameterInfo(0)->wordValue(), name);
    ASSERT_TRUE(engine.lockGL());
    EXPECT_EQ(InHostRange(*Context::Instance().FindTexture(0x4000001).pixelCopy(), 16), picture);
    engine.unlockGL();
    engine.selectSequence(first);
    EXPECT_EQ(engine.parameterInfo(0)->wordValue(), 0u);
    EXPECT_EQ(eval("QL_getSurfaceDim(QL_getParamValue(l))"), "[3,2,16]");
    // What counts is the texture, not the kind of control.
    upload(2);
    EXPECT_EQ(engine.parameterInfo(2)->wordValue(), 0u);
    engine.selectSequence(second);
    EXPECT_EQ(eval("(QL_setParamValue(t, QL_getParamValue(QL_initParam('late', 4))), 0)"), "0");
    upload(1);
    EXPECT_EQ(engine.parameterInfo(1)->wordValue(), Context::Instance().FindTexture(0x4000002).textureName.get());
    EXPECT_EQ(eval("QL_getSurfaceDim(67108866)"), "[3,2,16]");
}

// Panels are updated without a context.
TEST_F(FrameOperations, CopyAnUploadForAScriptThatAsksWhileThePanelIsUpdated) {
    start(
        "var copy; function setup() {}\n"
        "function updateUIFlags() { copy = QL_textureToSurface(QL_getSequenceTexture()); }\n"
        "function draw() { if (copy) QL_surfaceCopyTo(copy, QL_getSequenceRT(), false); }");
    addInstance();
    const Bytes picture = DistinctPicture(3, 2, 8);
    frame(3, 2, 8, picture);
    engine.updateUIFlags();
    EXPECT_EQ(frame(3, 2, 8), picture);
}

// A host may start an effect on a thread that it ends. What the system keeps for that thread, as a window, ends with
// it.
TEST_F(FrameOperations, OutliveTheThreadThatStartedTheEngine) {
    std::thread([this] { start(CopyScript(false), {{"copy.frag", kCopyFragment}}); }).join();
    addInstance();
    const Bytes picture = DistinctPicture(3, 2, 8);
    for (int turn = 0; turn < 2; ++turn) EXPECT_EQ(frame(3, 2, 8, picture), picture);
}

}  // namespace
}  // namespace quillon::test
