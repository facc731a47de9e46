#include <cstdlib>
#include <new>

#include "entities/Context.h"
#include "support/EngineTest.h"

#if !defined(_WIN32)
extern "C" const char __executable_start;
extern "C" const char etext;
#endif

namespace {

// Allocations that still succeed; below 0 all do. Counts in one thread only, which the test is.
thread_local long allocationsLeft = -1;
// Counts those of this program's own code alone: a GL driver need not survive the lack of memory.
thread_local bool sparesDrivers = false;

bool IsOwnCode([[maybe_unused]] const void* address) {
#if defined(_WIN32)
    return true;  // other modules have operators of their own
#else
    const auto* code = static_cast<const char*>(address);
    return code >= &__executable_start && code < &etext;
#endif
}

void* Allocate(std::size_t bytes, const void* caller) {
    if (allocationsLeft >= 0 && (!sparesDrivers || IsOwnCode(caller))) {
        if (allocationsLeft == 0) return nullptr;
        --allocationsLeft;
    }
    return std::malloc(bytes != 0 ? bytes : 1);
}

void* AllocateOrThrow(std::size_t bytes, const void* caller) {
    if (void* const memory = Allocate(bytes, caller)) return memory;
    throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t bytes) {
    return AllocateOrThrow(bytes, __builtin_return_address(0));
}
void* operator new[](std::size_t bytes) {
    return AllocateOrThrow(bytes, __builtin_return_address(0));
}
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
    return Allocate(bytes, __builtin_return_address(0));
}
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
    return Allocate(bytes, __builtin_return_address(0));
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}

namespace quillon::test {
namespace {

class OutOfMemory : public EngineTest {
protected:
    void SetUp() override {
        start(
            "var calls = 0, caught = 0, body = function () {}, long = Array(100).join('long '), e;\n"
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
TEST_F(OutOfMemory, ComesOutOfTheEngineHundredsOfTimesAndScriptsStillRun) {
    setBody("QL_initParam(long, 1, long);");
    for (int i = 0; i < 400; ++i) ASSERT_TRUE(runsOut(0)) << i;
    EXPECT_FALSE(runsOut(-1));
    EXPECT_EQ(eval("calls"), "401");
}

TEST_F(OutOfMemory, ComesOutEvenWhenTheScriptCaughtItsStandIn) {
    setBody("try { QL_initParam(long, 1, long); } catch (error) { ++caught; }");
    for (int i = 0; i < 400; ++i) ASSERT_TRUE(runsOut(0)) << i;
    EXPECT_EQ(eval("[calls, caught]"), "[400,400]");
    EXPECT_FALSE(runsOut(-1)) << "an exception is thrown on once";
}

TEST_F(OutOfMemory, LeavesNoReadBackHalfDone) {
    sparesDrivers = true;
    setBody("QL_textureToSurface(QL_initRenderTarget(2, 2, 8));");
    for (long allocations = 0; runsOut(allocations); ++allocations) {
        ASSERT_LT(allocations, 2000);
        const std::string id = eval("QL_textureToSurface(QL_initRenderTarget(2, 2, 8))");
        EXPECT_NE(Context::Instance().FindSurface(static_cast<std::uint32_t>(std::stoul(id))).pixelAddress(), nullptr)
            << "after " << allocations << " allocations";
    }
}

TEST_F(OutOfMemory, LeavesSoundEntitiesWhereverItStrikes) {
    sparesDrivers = true;
    const char* const kBodies[] = {
        "QL_initParam(long, 4, long);",
        "QL_initShader(long, 'uniform float f; uniform sampler2D t; void main() { gl_FragColor = texture2D(t,"
        " vec2(f)); }');",
        "QL_initTexture(long);",
        "QL_getShaderError(QL_initShader(long, 'nonsense'));",
        "QL_setShaderParamVal(QL_initShader('s', 'uniform float f; void main() { gl_FragColor = vec4(f); }'), 'f', 1);",
        "QL_renderShader(QL_initShader('s', 'void main() { gl_FragColor = vec4(1.0); }'), QL_initRenderTarget(2, 2, "
        "8));",
        "QL_surfaceToTexture(QL_textureToSurface(QL_initRenderTarget(2, 2, 8)));",
        "for (var i = 0; i < 3; ++i) QL_release(QL_initSurface(2, 2, 8));",
    };
    for (const char* body : kBodies) {
        SCOPED_TRACE(body);
        setBody(body);
        long allocations = 0;
        while (allocations < 2000 && runsOut(allocations)) ++allocations;
        EXPECT_GT(allocations, 0) << "the body needs memory";
        EXPECT_LT(allocations, 2000);
        EXPECT_FALSE(runsOut(-1));
        EXPECT_TRUE(engine.restartScript());
        addInstance();
    }
}

}  // namespace
}  // namespace quillon::test
