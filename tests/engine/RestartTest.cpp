#include "entities/Context.h"
#include "package/BlobReader.h"
#include "support/EngineTest.h"

namespace quillon::test {
namespace {

class Restart : public EngineTest {
protected:
    void restartWith(const std::string& script) {
        others.push_back(std::make_unique<TestEffect>(Files{{"fx.js", script}}));
        BlobReader::Load(others.back()->module());
        EXPECT_TRUE(engine.restartScript());
        EXPECT_TRUE(engine.isReady());
    }
    std::vector<std::unique_ptr<TestEffect>> others;
};

TEST_F(Restart, StartsIdsAndGlobalsAnewAndFillsTheSystemsOwnInstance) {
    start(
        "var ids, kept; function setup() { ids = [QL_initParam('p', 1, 'P'), QL_initShader('s', 'void main() {}'),"
        " QL_initRenderTarget(2, 2, 8), QL_initTexture('none'), QL_initSurface(1, 1, 8)];"
        " QL_setParamValue(ids[0], 3); } function draw() {}");
    const std::string first = "[16777217,33554433,50331649,67108865,100663297]";
    EXPECT_EQ(eval("ids"), first);
    EXPECT_EQ(eval("(kept = 1, QL_initParam('q', 1), QL_initRenderTarget(2, 2, 8), QL_setParamValue(ids[0], 9))"),
              "true");
    addInstance();
    EXPECT_EQ(engine.parameterCount(), 2u);
    EXPECT_TRUE(engine.restartScript());
    EXPECT_EQ(engine.parameterCount(), 1u);
    EXPECT_EQ(eval("[ids, kept === undefined]"), "[" + first + ",true]");
    Context& entities = Context::Instance();
    EXPECT_EQ(entities.current, 0u);
    EXPECT_EQ(&entities.FindParameter(0x1000001), &entities.CurrentSequence().At(0));
    EXPECT_EQ(engine.parameterInfo(0)->floatAt(0), 3.0f);
}

TEST_F(Restart, LeavesTheEngineReadyWhateverTheProgramIs) {
    start("function setup() { QL_initParam('p', 1, 'P'); } function draw() {}");
    EXPECT_EQ(engine.parameterCount(), 1u);
    addInstance();
    const struct {
        const char* script;
        std::uint32_t controls;
    } kScripts[] = {
        {"", 0},
        {"let x = 1; function setup() { QL_initParam('p', 1); }", 0},
        {"// \xFF\nfunction setup() { QL_initParam('p', 1); }", 0},
        {"QL_initParam('early', 1); nonsense(); function setup() { QL_initParam('p', 1); }", 1},
        {"function setup() { QL_initParam('a', 1); QL_initParam('b', 1); nonsense(); QL_initParam('c', 1); }", 2},
        {"function setup() { QL_initParam('a', 1); }\nfunction draw() { throw 1; }", 1},
    };
    for (const auto& [script, controls] : kScripts) {
        SCOPED_TRACE(script);
        restartWith(script);
        EXPECT_EQ(engine.parameterCount(), controls);
        SequenceHandle* const instance = addInstance();
        std::uint32_t width = 0, height = 0;
        engine.preRender(4, 5, &width, &height);
        EXPECT_EQ(width, 4u);
        EXPECT_EQ(height, 5u);
        engine.updateUIFlags();
        EXPECT_EQ(frame(2, 2, 8).size(), 16u);
        removeInstance(instance);
    }
}

class Identity : public EngineTest {
protected:
    std::string identity(std::uint32_t which) {
        std::string text = "from before";
        std::string& returned = engine.identityString(text, which);
        EXPECT_EQ(&returned, &text);
        return text;
    }
    std::uint32_t version() {
        std::uint32_t word = 99;
        EXPECT_EQ(engine.packedVersion(&word), &word);
        return word;
    }
};

TEST_F(Identity, IsWhatTheConfigSays) {
    start("function setup() {}");
    const std::pair<std::uint32_t, const char*> kTexts[] = {
        {0, "A test"}, {1, "Test"}, {2, "TestId"}, {3, ""}, {0xFFFFFFFF, ""}};
    for (const auto& [which, text] : kTexts) EXPECT_EQ(identity(which), text) << which;
    EXPECT_EQ(engine.effectFlags(), 33554464u);
    EXPECT_EQ(engine.effectFlags2(), 5120u);
    EXPECT_EQ(version(), 0xC0000081u);
}

TEST_F(Identity, IsReadAtAStartWhileARestartReadsOnlyTheProgram) {
    start("var who = 'first'; function setup() {}");
    const Files other{{"fx.js", "var who = 'second'; function setup() {}"}, {"config.xml", "<FXNAME>Other</FXNAME>"}};
    const TestEffect effect(other);
    BlobReader::Load(effect.module());
    EXPECT_TRUE(engine.restartScript());
    EXPECT_EQ(eval("who"), "\"second\"");
    EXPECT_EQ(identity(1), "Test");
    start("var who = 'third'; function setup() {}", {other[1]});
    EXPECT_EQ(eval("who"), "\"third\"");
    EXPECT_EQ(identity(1), "Other");
    addInstance();
    EXPECT_EQ(frame(2, 2, 8).size(), 16u);
}

}  // namespace
}  // namespace quillon::test
