#include <cstring>

#include "entities/Context.h"
#include "support/EngineTest.h"
#include "support/Pixels.h"

namespace quillon::test {
namespace {

class SurfaceApi : public EngineTest {
protected:
    void SetUp() override {
        start(
            "var body = function () {}, layer;\nfunction setup() { layer = QL_initParam('l', 4, 'L'); }\n"
            "function draw() { body(); }\n");
        addInstance();
    }
    static Surface& SurfaceAt(std::uint32_t ordinal) { return Context::Instance().FindSurface(0x6000000 + ordinal); }
};

TEST_F(SurfaceApi, MakesEmptySurfaces) {
    expectValues({
        {"QL_initSurface(640, 3, 16)", "100663297"},
        {"QL_initSurface(1, 2)", "throws RangeError: invalid stack index 2"},
        {"QL_initSurface()", "throws RangeError: invalid stack index 0"},
        {"QL_initSurface('2', 2.9, 8, 'more')", "100663298"},  // the refused ones took no number
    });
    EXPECT_EQ(SurfaceAt(1).rowBytes, 5120u);
    EXPECT_EQ(SurfaceAt(2).height, 2u);
    EXPECT_EQ(eval("QL_initSurface(0x10000000, 1, 32)"), "100663299");
    EXPECT_EQ(SurfaceAt(3).rowBytes, 0u) << "counted in 32 bits";
}

TEST_F(SurfaceApi, RefusesWhatIsNoSurfaceOrNoTarget) {
    expectValues({
        {"(s = QL_initSurface(2, 2, 8), none = QL_initSurface(0, 2, 8), t = QL_getParamValue(layer), 0)", "0"},
        {"[QL_surfaceToTexture(0), QL_surfaceToTexture(t), QL_surfaceToTexture()]", "[false,false,false]"},
        {"[QL_surfaceQuantize(t, false, 1, 1, 1, false), QL_surfaceQuantize(none, false, 1, 1, 1, false),"
         " QL_surfaceQuantize(0x60000FF, false, 1, 1, 1, false), QL_surfaceQuantize(),"
         " QL_surfaceQuantize(t, false, {valueOf: function () { throw 0; }})]",
         "[false,false,false,false,false]"},
        {"[QL_surfaceCopyTo(t, t), QL_surfaceCopyTo(none, t), QL_surfaceCopyTo(0x60000FF, t)]", "[false,false,false]"},
        {"[QL_surfaceCopyTo(s, 0), QL_surfaceCopyTo(s, layer), QL_surfaceCopyTo(s, 0x2000001), QL_surfaceCopyTo(s, s),"
         " QL_surfaceCopyTo(s, 0x30000FF), QL_surfaceCopyTo(s, QL_initTexture('none'))]",
         "[false,false,false,false,false,false]"},
        {"QL_surfaceCopyTo(s, t)", "true"},
        {"QL_textureToSurface(0)", "0"},
        {"QL_textureToSurface('none') === 0", "true"},
        {"QL_textureToSurface(0x40000FF)", "100663299"},
    });
    EXPECT_EQ(SurfaceAt(3).width, 0u);
    EXPECT_EQ(SurfaceAt(3).height, 0u);
    EXPECT_EQ(SurfaceAt(3).pixelAddress(), nullptr);
}

TEST_F(SurfaceApi, TakesTheInputAsAnAliasAndATargetAsACopy) {
    const Bytes input = DistinctPicture(3, 2, 8);
    eval(
        "body = function () { a = QL_textureToSurface(QL_getSequenceTexture()); QL_surfaceCopyTo(a,"
        " QL_getSequenceRT()); b = QL_textureToSurface(QL_getSequenceRT()); }");
    EXPECT_EQ(frame(3, 2, 8, input), input);
    ASSERT_EQ(eval("[a, b]"), "[100663297,100663298]");
    for (const std::uint32_t ordinal : {1u, 2u}) {
        Surface& taken = SurfaceAt(ordinal);
        EXPECT_TRUE(taken.isArgbOrdered);
        ASSERT_NE(taken.pixelAddress(), nullptr);
        EXPECT_EQ(Bytes(taken.pixelAddress(), taken.pixelAddress() + 24), input);
        EXPECT_EQ(taken.borrowedPixels != nullptr, ordinal == 1);
    }
    // The alias stays readable when the texture goes, the other one is nobody's but its own.
    EXPECT_EQ(eval("QL_release(QL_getSequenceTexture())"), "true");
    EXPECT_EQ(Bytes(SurfaceAt(1).pixelAddress(), SurfaceAt(1).pixelAddress() + 24), input);
}

TEST_F(SurfaceApi, CopiesUprightOrTurnedAtEachDepth) {
    for (const std::uint32_t bits : {8u, 16u, 32u})
        for (const bool flip : {false, true}) {
            const Bytes input = DistinctPicture(2, 3, bits);
            eval(
                "body = function () { var s = QL_textureToSurface(QL_getSequenceTexture()); QL_surfaceCopyTo(s,"
                " QL_getSequenceRT(), " +
                std::string(flip ? "'yes'" : "''") + "); QL_release(s); }");
            const Bytes upright = InHostRange(frame(2, 3, bits, input), bits);
            EXPECT_EQ(upright, flip ? ReversedRows(input, 3) : input) << bits << (flip ? " flipped" : "");
        }
}

// Storage that was specified anew without data leaves the texture its older, smaller copy.
TEST_F(SurfaceApi, ReadsNoMoreThanAnAliasHolds) {
    frame(2, 2, 8, DistinctPicture(2, 2, 8));
    expectValues({
        {"(t = QL_getSequenceTexture(), QL_surfaceCopyTo(QL_initSurface(64, 64, 32), t, true))", "true"},
        {"QL_getSurfaceDim(t)", "[64,64,32]"},
        {"(s = QL_textureToSurface(t), rt = QL_initRenderTarget(1, 1, 8), 0)", "0"},
        {"[QL_surfaceCopyTo(s, rt, false), QL_surfaceCopyTo(s, rt, true)]", "[true,true]"},
        {"QL_getSurfaceDim(QL_surfaceToTexture(s))", "[64,64,32]"},
        // Rows of 2^49 bytes, 2^15 of them: 0 in 64 bits.
        {"QL_surfaceCopyTo(QL_textureToSurface(QL_initRenderTarget(1 << 20, 1 << 15, 1 << 30)), t, false)", "true"},
        {"(s = QL_textureToSurface(t), [QL_surfaceCopyTo(s, rt, true), QL_surfaceCopyTo(s, rt)])", "[true,true]"},
        {"QL_getSurfaceDim(QL_surfaceToTexture(s))", "[1048576,32768,1073741824]"},
    });
}

// Two surfaces of one texture are one picture, and what GL holds is not touched by it.
TEST_F(SurfaceApi, QuantizesInPlaceForAllAliases) {
    const Bytes input = DistinctPicture(3, 2, 8);
    eval(
        "body = function () { var t = QL_getSequenceTexture(); a = QL_textureToSurface(t); b = QL_textureToSurface(t);"
        " done = QL_surfaceQuantize(a, false, 1, 1, 0.5, false); QL_surfaceCopyTo(b, QL_getSequenceRT()); }");
    const Bytes output = frame(3, 2, 8, input);
    ASSERT_EQ(eval("[a, b, done]"), "[100663297,100663298,true]");
    EXPECT_EQ(SurfaceAt(1).pixelAddress(), SurfaceAt(2).pixelAddress());
    EXPECT_EQ(Bytes(SurfaceAt(2).pixelAddress(), SurfaceAt(2).pixelAddress() + 24), output);
    for (std::size_t pixel = 0; pixel < 24; pixel += 4) {
        EXPECT_EQ(output[pixel], input[pixel]);
        EXPECT_TRUE(output[pixel + 1] == std::byte{0} || output[pixel + 1] == std::byte{255});
        EXPECT_EQ(output[pixel + 1], output[pixel + 3]);
    }
}

// The script's order is grayscale, mode, dither, value, serpentine. At 15 bits nothing is done.
TEST_F(SurfaceApi, TakesTheArgumentsOfAQuantizeInTheScriptsOrder) {
    frame(2, 2, 8, DistinctPicture(2, 2, 8));
    ASSERT_EQ(eval("s = QL_textureToSurface(QL_getSequenceTexture())"), "100663297");
    const auto quantized = [&](const char* arguments, std::uint32_t bits = 8) {
        constexpr std::uint8_t kTwoRows[] = {7, 10, 10, 10, 7, 10, 10, 10, 7, 100, 100, 100, 7, 100, 100, 100};
        std::memcpy(SurfaceAt(1).pixelAddress(), kTwoRows, sizeof kTwoRows);
        SurfaceAt(1).bitDepth = bits;
        EXPECT_EQ(eval("QL_surfaceQuantize(s, " + std::string(arguments) + ")"), "true");
        std::string reds;
        for (std::size_t pixel = 0; pixel < 16; pixel += 4)
            reds += std::to_string(static_cast<int>(SurfaceAt(1).pixelAddress()[pixel + 1])) + " ";
        return reds;
    };
    EXPECT_EQ(quantized("false, 1, 3, 0.42, false"), "0 0 0 255 ");
    EXPECT_EQ(quantized("'', '1', 3.9, '0.42', 'yes'"), "0 0 255 0 ");
    EXPECT_EQ(quantized("true, 8, 1, 0.42, false"), "10 10 100 100 ");
    EXPECT_EQ(quantized("false, 1, 1, 0.01, false"), "255 255 255 255 ");
    EXPECT_EQ(quantized("false, 1, 1, 0.42, false", 15), "10 10 100 100 ");
}

TEST_F(SurfaceApi, TurnsASurfaceIntoATextureOfItsOwn) {
    frame(2, 2, 32, DistinctPicture(2, 2, 32));
    expectValues({
        {"s = QL_textureToSurface(QL_getSequenceTexture())", "100663297"},
        {"QL_getSurfaceDim(QL_surfaceToTexture(QL_initSurface(5, 4, 8)))", "[5,4,8]"},
        {"(t = QL_surfaceToTexture(s), [QL_release(s), QL_getSurfaceDim(t)])", "[true,[2,2,32]]"},
    });
}

}  // namespace
}  // namespace quillon::test
