#include "ToolTest.h"

// What the played host makes of a frame: sizes, positions and what the script learns of it.

namespace quillon::test {

namespace {

// Fills the output with the composition's extent and its pixel aspect, times 1000, plus two controls' values.
const Files kHostEffect = {
    {"fx.js",
     "var shader, place, far;\n"
     "function setup() {\n"
     "  place = QL_initParam('place', QL_Type.POINT2D, 'Place');\n"
     "  QL_setParamValue(place, [0.5, 0.25]);\n"
     "  far = QL_initParam('far', QL_Type.FLOAT, 'Far');\n"
     "  QL_setParamFlags(far, QL_ParamFlags.ScaleByWidth);\n"
     "  QL_setParamValue(far, 12);\n"
     "  shader = QL_initShader('s', 'uniform vec4 c; uniform vec2 place; uniform float far; void main() "
     "{ gl_FragColor = vec4(c.xyz * 1000.0 + vec3(place, far), 1.0); }');\n}\n"
     "function draw() {\n"
     "  var c = QL_getContextExtent();\n"
     "  QL_setShaderParamVal(shader, 'c', [c[0], c[1], c[2], 0]);\n"
     "  QL_setShaderParam(shader, place);\n"
     "  QL_setShaderParam(shader, far);\n"
     "  QL_renderShader(shader, QL_getSequenceRT(), true);\n}\n"}};

struct HostCase {
    const char* options;
    std::size_t width, height;
    std::vector<float> shown;
};

// The input has 40x20 pixels.
const HostCase kCases[] = {
    {"", 40, 20, {40020, 20005, 1012}},
    {"--route classic", 39, 19, {40020, 20005, 1012}},
    {"--host premiere", 40, 20, {40020, 20005, 1012}},
    {"--comp 100x50 --pixel-aspect 2/1", 40, 20, {100020, 50005, 2012}},
    {"--downsample 2", 20, 10, {40010, 20002.5f, 1006}},
    {"--downsample 2 --set place=8,4 --set far=20", 20, 10, {40004, 20002, 1010}},
};

using Host = ToolTest;

TEST_F(Host, SizesTheFrameAndReportsItToTheScript) {
    addEffect("fx", kHostEffect);
    writeSamples<float>("in.argb", std::vector<float>(40 * 20 * 4));
    for (const HostCase& row : kCases) {
        const ToolRun result =
            run(std::string("render fx -i in.argb --size 40x20 --depth 32 -o out.argb ") + row.options);
        ASSERT_EQ(result.err, "");
        const auto pixels = readSamples<float>("out.argb");
        ASSERT_EQ(pixels.size(), row.width * row.height * 4) << row.options;
        const std::size_t middle = (row.height / 2 * row.width + row.width / 2) * 4;
        for (std::size_t i = 0; i < 3; ++i) EXPECT_FLOAT_EQ(pixels[middle + i + 1], row.shown[i]) << row.options;
    }
}

TEST_F(Host, ReducesPicturesByTheMeanOfWhatIsSeen) {
    addCopyEffect();
    // Alpha, red, green, blue: the second pixel cannot be seen, and the last column has no neighbor.
    writeSamples<float>("in.argb", {1, 8, 0, 2, 0, 99, 9, 9, 0.5f, 3, 4, 5,  //
                                    1, 0, 4, 2, 0, 99, 9, 9, 0.5f, 5, 4, 5});
    ASSERT_EQ(run("render copy -i in.argb --size 3x2 --depth 32 -o out.argb --downsample 2").err, "");
    EXPECT_EQ(readSamples<float>("out.argb"), (std::vector<float>{0.5f, 4, 2, 2, 0.5f, 4, 4, 5}));
}

TEST_F(Host, WarnsOfFlagsThatAllowLessThanTheEffectCanDo) {
    addEffect("fx", {{"fx.js", "function setup() {}\nfunction draw() {}\n"}, {"config.xml", "<FLAGS>32</FLAGS>"}});
    writeSamples<std::uint8_t>("in.argb", std::vector<std::uint8_t>(4 * 4 * 4));
    const std::string render = "render fx -i in.argb --size 4x4 -o out.argb ";
    EXPECT_EQ(run(render + "--depth 8").err,
              "fx/config.xml: warning: FLAGS2 lacks 1024, so that hosts take the classic route; 5120 is what it should "
              "be [config]\n");
    EXPECT_EQ(readSamples<std::uint8_t>("out.argb").size(), 3u * 3 * 4);
    EXPECT_EQ(run(render + "--depth 8 --host premiere").err, "");
    writeSamples<std::uint16_t>("in.argb", std::vector<std::uint16_t>(4 * 4 * 4));
    EXPECT_EQ(run(render + "--depth 16 --route classic").err,
              "fx/config.xml: warning: FLAGS and FLAGS2 do not allow 16 bits, which After Effects would not use; "
              "33554464 and 5120 allow all depths [config]\n");
}

TEST_F(Host, ReportsARouteThatLeavesNothing) {
    addCopyEffect();
    writeSamples<std::uint8_t>("in.argb", {255, 1, 2, 3});
    const ToolRun result = run("render copy -i in.argb --size 1x1 --depth 8 -o out.png --route classic");
    EXPECT_NE(result.err.find("0x0 pixels, as the classic route makes of it"), std::string::npos) << result.err;
    EXPECT_EQ(result.status, 1);
}

}  // namespace

}  // namespace quillon::test
