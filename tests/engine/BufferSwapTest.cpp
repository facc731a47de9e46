// The hidden surface swaps on every fifth frame of the process. The linker sends the engine's eglSwapBuffers here.

#include <EGL/egl.h>

#include "support/EngineTest.h"

namespace {
int swaps = 0;
}

extern "C" EGLBoolean __real_eglSwapBuffers(EGLDisplay display, EGLSurface surface);
extern "C" EGLBoolean __wrap_eglSwapBuffers(EGLDisplay display, EGLSurface surface);

EGLBoolean __wrap_eglSwapBuffers(EGLDisplay display, EGLSurface surface) {
    ++swaps;
    return __real_eglSwapBuffers(display, surface);
}

namespace quillon::test {

namespace {
using BufferSwap = EngineTest;
}

TEST_F(BufferSwap, FallsOnEveryFifthFrameWhicheverInstanceDrewIt) {
    start(CopyScript(false), {{"copy.frag", kCopyFragment}});
    SequenceHandle* takingTurns[] = {addInstance(), addInstance()};
    std::string swapsAfterEachFrame;
    for (int i = 0; i < 15; ++i) {
        engine.selectSequence(takingTurns[i % 2]);
        frame(4, 4, 8);
        swapsAfterEachFrame += std::to_string(swaps);
    }
    EXPECT_EQ(swapsAfterEachFrame, "000011111222223");
}

TEST_F(BufferSwap, CountsFramesWithABrokenShaderAndNoFrameWithoutAnInstance) {
    start("function setup() { QL_initShader('broken', 'void main() {'); }");
    for (int i = 0; i < 7; ++i) frame(4, 4, 8);  // nobody is selected
    EXPECT_EQ(swaps, 0);
    addInstance();
    for (int i = 0; i < 5; ++i) frame(4, 4, 8);
    EXPECT_EQ(swaps, 1);
}

}  // namespace quillon::test
