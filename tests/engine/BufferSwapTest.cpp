// The hidden surface swaps on every fifth frame of the process.

#include "WindowSystemCalls.h"
#include "support/EngineTest.h"

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
        swapsAfterEachFrame += std::to_string(BufferSwaps());
    }
    EXPECT_EQ(swapsAfterEachFrame, "000011111222223");
}

TEST_F(BufferSwap, CountsFramesWithABrokenShaderAndNoFrameWithoutAnInstance) {
    start("function setup() { QL_initShader('broken', 'void main() {'); }");
    for (int i = 0; i < 7; ++i) frame(4, 4, 8);  // nobody is selected
    EXPECT_EQ(BufferSwaps(), 0);
    addInstance();
    for (int i = 0; i < 5; ++i) frame(4, 4, 8);
    EXPECT_EQ(BufferSwaps(), 1);
}

}  // namespace quillon::test
