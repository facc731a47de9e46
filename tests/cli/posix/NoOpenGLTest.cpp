#include "../ToolTest.h"

namespace quillon::test {

namespace {

using NoOpenGL = ToolTest;

TEST_F(NoOpenGL, IsNamed) {
    addCopyEffect();
    writeSamples<std::uint8_t>("in.argb", {255, 1, 2, 3});
    const ToolRun result = run("render copy -i in.argb --size 1x1 --depth 8 -o out.png", "LIBGL_DRIVERS_PATH=none");
    EXPECT_EQ(result.err.rfind("quillon: error: no OpenGL", 0), 0u) << result.err;
    EXPECT_EQ(result.status, 1);
    EXPECT_FALSE(exists("out.png"));
}

}  // namespace

}  // namespace quillon::test
