#include <new>

#include "entities/Context.h"
#include "memory/LimitedMemory.h"
#include "support/EngineTest.h"

namespace quillon::test {
namespace {

class OutOfMemory : public EngineTest {
protected:
    void SetUp() override {
        start(
            "var calls = 0, body = function () {}, long = Array(100).join('long '), e;\n"
            "function setup() {}\nfunction draw() {}\n"
            "function updateUIFlags() { ++calls; body(); }\n");
        addInstance();
    }

    // Runs the body with memory for so many allocations. Whether the lack of more came out as an exception.
    bool runsOut(long allocations) {
        EXPECT_TRUE(engine.lockGL());
        bool ranOut = false;
        allocationsLeft = allocations;
        try {
            engine.updateUIFlags();
        } catch (const std::bad_alloc&) {
            ranOut = true;
        }
        allocationsLeft = -1;
        engine.unlockGL();
        return ranOut;
    }
    void setBody(const std::string& body) { eval("body = function () { " + body + " }"); }
};

// The heap counts how deep it is in native calls; a way out past it would wear that count down.
TEST_F(OutOfMemory, ComesOutOfTheEngineHundredsOfTimesEvenWhenTheScriptCaughtIt) {
    for (const char* body : {"QL_initParam(long, 1, long);", "try { QL_initParam(long, 1, long); } catch (error) {}"}) {
        setBody(body);
        for (int i = 0; i < 400; ++i) ASSERT_TRUE(runsOut(0)) << i << body;
        EXPECT_FALSE(runsOut(-1)) << "an exception is thrown on once";
    }
    EXPECT_EQ(eval("calls"), "802");
}

TEST_F(OutOfMemory, LeavesNoReadBackHalfDone) {
    countsOwnCodeOnly = true;
    setBody("QL_textureToSurface(QL_initRenderTarget(2, 2, 8));");
    for (long allocations = 0; runsOut(allocations); ++allocations) {
        ASSERT_LT(allocations, 2000);
        const std::string id = eval("QL_textureToSurface(QL_initRenderTarget(2, 2, 8))");
        EXPECT_NE(Context::Instance().FindSurface(static_cast<std::uint32_t>(std::stoul(id))).pixelAddress(), nullptr)
            << "after " << allocations << " allocations";
    }
}

}  // namespace
}  // namespace quillon::test
