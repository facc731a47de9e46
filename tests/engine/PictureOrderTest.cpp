#include <algorithm>
#include <limits>

#include "support/EngineTest.h"
#include "support/GuardedBytes.h"
#include "support/Pixels.h"

namespace quillon::test {
namespace {

// copied(source, target, flip) is one pass; draw() does what `road` holds. `between` is a target like the output.
const char* const kScript =
    "var copy, turn, road = function () {}, between;\n"
    "function setup() { copy = QL_initShader('copy'); turn = QL_initShader('turn'); }\n"
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
        start(kScript, {{"copy.frag", kCopyFragment},
                        {"turn.frag",
                         "uniform sampler2D sInput0;\nvoid main() { vec4 c = texture2D(sInput0, gl_TexCoord[0].st);\n"
                         "  gl_FragColor = vec4(c.g, c.b, c.a, c.r); }\n"}});
        addInstance();
        ASSERT_EQ(shaderErrors(), "");
    }
    void take(const std::string& road) { eval("road = function (from, to) { " + road + " }"); }
    // What the mapped frame is in the host's range, framebuffer's y = 0 first.
    Bytes rendered(std::uint32_t width, std::uint32_t height, std::uint32_t bits, const Bytes& input) {
        return inHostRange(frame(width, height, bits, input), bits);
    }
};

TEST_F(PictureOrder, FollowsTheFlipsAndKeepsTheChannels) {
    const struct {
        const char* road;
        bool turned;
    } kRoads[] = {
        {"pass(copy, from, to, false)", false},
        {"pass(copy, from, to, true)", true},
        {"pass(copy, from, between, false); pass(copy, between, to, false)", false},
        {"pass(copy, from, between, true); pass(copy, between, to, false)", true},
        {"pass(copy, from, between, false); pass(copy, between, to, true)", true},
        {"pass(copy, from, between, true); pass(copy, between, to, true)", false},
        {"pass(copy, from, between, false); QL_blitRenderTarget(between, to, false, false)", false},
        {"pass(copy, from, between, false); QL_blitRenderTarget(between, to, true, false)", true},
        {"pass(copy, from, between, true); QL_blitRenderTarget(between, to, true, true)", false},
    };
    for (const auto& [road, turned] : kRoads) {
        take(road);
        for (const std::uint32_t bits : {8u, 16u, 32u}) {
            const Bytes input = distinctPicture(3, 2, bits);
            EXPECT_EQ(rendered(3, 2, bits, input), turned ? reversedRows(input, 2) : input) << road << " at " << bits;
        }
    }
}

TEST_F(PictureOrder, ShowsShadersRedGreenBlueAlpha) {
    take("pass(turn, from, between, false); pass(copy, between, to, false)");
    // A, R, G, B in; the shader makes red of green, green of blue, blue of alpha, alpha of red.
    const std::vector<float> out = channelsOf<float>(rendered(1, 1, 32, bytesOf<float>({0.25f, 3, 5, 7})));
    EXPECT_EQ(out, (std::vector<float>{3, 5, 7, 0.25f}));
}

TEST_F(PictureOrder, GivesEveryEightBitValueBack) {
    take("pass(copy, from, to, false)");
    std::vector<std::uint8_t> channels;
    for (int v = 0; v < 256; ++v)
        for (const int channel : {v, 255 - v, v ^ 0x55, v * 7}) channels.push_back(static_cast<std::uint8_t>(channel));
    EXPECT_EQ(rendered(64, 4, 8, bytesOf(channels)), bytesOf(channels));
}

TEST_F(PictureOrder, GivesEverySixteenBitValueOfTheHostBackButOne) {
    take("pass(copy, from, between, false); pass(copy, between, to, false)");
    std::vector<std::uint16_t> channels(4 * 128 * 65);
    for (std::size_t i = 0; i < channels.size(); ++i)
        channels[i] = static_cast<std::uint16_t>(std::min<std::size_t>(i, 32768));
    std::vector<std::uint16_t> expected = channels;
    expected[16385] = 16384;
    EXPECT_EQ(channelsOf<std::uint16_t>(rendered(128, 65, 16, bytesOf(channels))), expected);
}

TEST_F(PictureOrder, GivesEveryFloatBackToTheLastBit) {
    take("pass(copy, from, between, false); pass(copy, between, to, false)");
    using Limits = std::numeric_limits<float>;
    std::vector<float> channels = {0,
                                   1,
                                   -1,
                                   0.1f,
                                   1.0f / 3,
                                   65504,
                                   65535,
                                   -65536,
                                   16777216,
                                   1e-30f,
                                   1e30f,
                                   -1e30f,
                                   Limits::max(),
                                   Limits::lowest(),
                                   Limits::min(),
                                   -Limits::min(),
                                   Limits::epsilon(),
                                   1 + Limits::epsilon(),
                                   0.99999994f,
                                   255.0f / 256};
    for (float v = 1.17549435e-38f * 3; v < 1e37f; v *= 1.7f) channels.push_back(channels.size() % 2 ? v : -v);
    channels.resize(channels.size() / 4 * 4);
    EXPECT_EQ(rendered(static_cast<std::uint32_t>(channels.size() / 4), 1, 32, bytesOf(channels)), bytesOf(channels));
}

// Rows apart by more than their width, the last one ending at its width, and rows that lie upwards in memory.
TEST_F(PictureOrder, ReadsTheHostsRowsWhereTheyLie) {
    take("pass(copy, from, to, false)");
    for (const std::uint32_t bits : {8u, 16u, 32u})
        for (const bool upwards : {false, true}) {
            const Bytes picture = distinctPicture(3, 3, bits);
            const std::size_t row = picture.size() / 3, apart = row + 2 * bits / 2;
            const Bytes inMemory = upwards ? reversedRows(picture, 3) : picture;
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
