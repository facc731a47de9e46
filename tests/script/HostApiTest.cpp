#include <cstdio>

#include "platform/FailFast.h"
#include "script/Scripting.h"
#include "support/EndOfProcess.h"
#include "support/EngineTest.h"

namespace quillon::test {
namespace {

class HostApi : public EngineTest {
protected:
    void SetUp() override {
        start(
            "var seen = 'none'; function setup() {} function draw() { QL_setOutputExtent(3, 3); }\n"
            "function preRender(w, h, x) { seen = QL_getTime(); }\n");
    }
};

TEST_F(HostApi, TellsTheTimeOfTheInstancesLastFrame) {
    SequenceHandle* const first = addInstance();
    EXPECT_EQ(eval("QL_getTime()"), "0");
    frame(2, 2, 8, {}, 1.25);
    EXPECT_EQ(eval("QL_getTime('dropped')"), "1.25");
    addInstance();
    frame(2, 2, 8, {}, -3);
    EXPECT_EQ(eval("QL_getTime()"), "-3");
    engine.selectSequence(first);
    std::uint32_t width = 0, height = 0;
    engine.preRender(4, 4, &width, &height);
    EXPECT_EQ(eval("seen"), "1.25") << "the size is asked for before the new frame's time is known";
}

TEST_F(HostApi, GivesTheCompositionAsLastStoredForAnyInstance) {
    SequenceHandle* const first = addInstance();
    EXPECT_EQ(eval("QL_getContextExtent()"), "[0,0,1]");
    engine.setContextExtent(1920, 1080, 0.5f);
    addInstance();
    engine.setContextExtent(640, 4294967295u, 5.0f);
    engine.selectSequence(first);
    EXPECT_EQ(eval("QL_getContextExtent()"), "[640,4294967295,1]");
}

TEST_F(HostApi, GivesTheInputOriginOfTheInstanceAsSigned) {
    SequenceHandle* const first = addInstance();
    EXPECT_EQ(eval("QL_getInputOrigin()"), "[0,0]");
    engine.setInputOrigin(static_cast<std::uint32_t>(-5), 7);
    addInstance();
    engine.setInputOrigin(1, 0x80000000u);
    EXPECT_EQ(eval("QL_getInputOrigin()"), "[1,-2147483648]");
    engine.selectSequence(first);
    EXPECT_EQ(eval("QL_getInputOrigin()"), "[-5,7]");
}

TEST_F(HostApi, ReleasesWhatAnIdNamesAndIgnoresTheRest) {
    addInstance();
    for (const char* harmless : {"0", "1", "12345", "0xFFFFFF", "'text'", "NaN", "undefined", "-0.9", "0x1000000",
                                 "0x1000099", "0x2FFFFFF", "0x3000001", "0x4000001", "0x6FFFFFF"})
        EXPECT_EQ(eval("QL_release(" + std::string(harmless) + ")"), "true") << harmless;
    expectValues({
        {"(a = QL_initTexture('a'), b = QL_initTexture('b'), c = QL_initTexture('c'), [a, b, c])",
         "[67108865,67108866,67108867]"},
        {"[QL_release(b), QL_release(b)]", "[true,true]"},
        {"[QL_initTexture('d'), QL_initTexture('e')]", "[67108866,67108868]"},
    });
}

TEST_F(HostApi, SharesOneIdBetweenTheScriptAndAnInstanceWhoseTargetItReleased) {
    addInstance();
    frame(2, 2, 8);
    expectValues({{"(rt = QL_getSequenceRT(), QL_release(rt), QL_getSurfaceDim(rt))", "false"},
                  {"QL_initRenderTarget(7, 5, 8) === rt", "true"},
                  {"QL_getSurfaceDim(QL_getSequenceRT())", "[7,5,8]"}});
    EXPECT_EQ(frame(2, 3, 8).size(), 24u);
    EXPECT_EQ(eval("QL_getSurfaceDim(rt)"), "[2,3,8]") << "the frame takes what its id names now";
}

// On purpose, not by an accident of memory; an observer learns why and where.
TEST(ReleaseDeathTest, EndsTheProcessForAnIdOfNoKind) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    SetFailFastObserver([](const char* reason) {
        const ScriptError error = Scripting::instance().AtCurrentLine(reason);
        std::fprintf(stderr, "%s, line %d of \"%s\"\n", error.message.c_str(), error.line, error.evaluated.c_str());
    });
    for (const char* id : {"0x5000001", "0x7000001", "-1", "-16777216", "4294967295", "1e99"})
        EXPECT_EXIT(
            {
                Scripting::instance().Open();
                Scripting::instance().Eval(
                    ("\n[1].map(function () {\nQL_release(" + std::string(id) + "); });").c_str());
            },
            EndedOnPurpose, "an id that names no kind of entity was released, line 3 of \"\n\\[1")
            << id;
}

}  // namespace
}  // namespace quillon::test
