#include <algorithm>

#include "support/EngineTest.h"
#include "support/GuardedBytes.h"
#include "support/Pixels.h"

namespace quillon::test {
namespace {

// copied(source, target, flip) is one pass; draw() does what `road` holds. `between` is a target like the output.
const char* const kScript =
    "var copy, road = function () {}, between;\n"
    "function setup() { copy = QL_initShader('copy'); }\n"
    "function pass(shader, source, target, flip) {\n"
    "  QL_setTextureParam(source, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);\n"
    "  QL_setTextureParam(source, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);\n"
    "  QL_setShaderParamVal(shader, 'sInput0', source);\n"
    "  QL_renderShader(shader, target, flip); }\n"
    "function draw() { var size = QL_getSurfaceDim(QL_getSequenceRT());\n"
    "  between = QL_initRenderTarget(size[0], size[1], size[2]);\n"
    "  road(QL_getSequenceTexture(), QL_getSequenceRT()); QL_release(between); }\n";

class PictureOrder : public EngineTest {
protected:
    void SetUp() override {
        start(kScript, {{"copy.frag", kCopyFragment}});
        addInstance();
        ASSERT_EQ(shaderErrors(), "");
    }
    void take(const std::string& road) { eval("road = function (from, to) { " + road + " }"); }
    // What the mapped frame is in the host's range, framebuffer's y = 0 first.
    Bytes rendered(std::uint32_t width, std::uint32_t height, std::uint32_t bits, const Bytes& input) {
        return InHostRange(frame(width, height, bits, input), bits);
    }
};

TEST_F(PictureOrder, FollowsTheFlipsAndKeepsTheChannels) {
    const struct {
        const char* road;
        bool turned;
    } kRoads[] = {
        {"pass(copy, from, to, false)", false},
        {"pass(copy, from, to, true)", true},
        {"pass(copy, from, between, true); pass(copy, between, to, false)", true},
        {"pass(copy, from, between, true); pass(copy, between, to, true)", false},
        {"pass(copy, from, between, false); QL_blitRenderTarget(between, to, true, false)", true},
        {"pass(copy, from, between, true); QL_blitRenderTarget(between, to, true, true)", false},
    };
    for (const auto& [road, turned] : kRoads) {
        take(road);
        for (const std::uint32_t bits : {8u, 16u, 32u}) {
            const Bytes input = DistinctPicture(3, 2, bits);
            EXPECT_EQ(rendered(3, 2, bits, input), turned ? ReversedRows(input, 2) : input) << road << " at " << bits;
        }
    }
}

// Rows apart by more than their width, the last one ending at its width, and rows that run upwards in memory.
TEST_F(PictureOrder, ReadsTheHostsRowsInPlace) {
    take("pass(copy, from, to, false)");
    for (const std::uint32_t bits : {8u, 16u, 32u})
        for (const bool upwards : {false, true}) {
            const Bytes picture = DistinctPicture(3, 3, bits);
            const std::size_t row = picture.size() / 3, apart = row + 2 * bits / 2;
            const Bytes inMemory = upwards ? ReversedRows(picture, 3) : picture;
            Bytes padded(2 * apart + row, std::byte{0xEE});
            for (std::size_t y = 0; y < 3; ++y) std::copy_n(&inMemory[y * row], row, &padded[y * apart]);
            const GuardedBytes memory(padded);
            const std::byte* const first = memory.data() + (upwards ? 2 * apart : 0);
            ASSERT_TRUE(engine.lockGL());
            engine.setLayerPixels(kInputLayer, first, 3, 3, bits, upwards ? 0 - std::uint64_t{apart} : apart);
            engine.unlockGL();
            EXPECT_EQ(rendered(3, 3, bits, {}), picture) << bits << (upwards ? " upwards" : " downwards");
        }
}

}  // namespace
}  // namespace quillon::test
