#include "ToolTest.h"

// What reaches the script and the shaders from the command line. The effects here write a control's value, a time or
// a size into a pixel of 32-bit floats.

namespace quillon::test {

namespace {

// An effect with one control, whose value fills the picture.
Files ControlEffect(const std::string& kind, const std::string& type, const std::string& setUp = "") {
    return {{"fx.js",
             "var shader, control;\n"
             "function setup() {\n"
             "  control = QL_initParam('value', QL_Type." +
                 kind + ", 'The label');\n  " + setUp +
                 "\n  shader = QL_initShader('show');\n}\n"
                 "function draw() {\n"
                 "  QL_setShaderParam(shader, control);\n"
                 "  QL_renderShader(shader, QL_getSequenceRT(), true);\n}\n"},
            {"show.frag", "uniform " + type + " value;\nvoid main() { gl_FragColor = vec4(value" +
                              (type == "vec4"   ? ""
                               : type == "vec3" ? ", 0.0"
                               : type == "vec2" ? ", 0.0, 0.0"
                                                : "") +
                              "); }\n"}};
}

struct ValueCase {
    const char* kind;
    const char* type;  // of the uniform
    const char* setUp;
    const char* option;
    std::vector<float> shown;  // red, green, blue, alpha
};

const std::string kChoices = "QL_setParamChoices(control, 'Normal|3|Add');";

const ValueCase kCases[] = {
    {"FLOAT", "float", "", "--set \"The label=1e-3\"", {1e-3f, 1e-3f, 1e-3f, 1e-3f}},
    {"POINT", "vec3", "", "--set \"value= 1, 2, 3\"", {1, 2, 3, 0}},
    {"COLOR", "vec4", "", "--set value=0.25,0.5,2", {0.25f, 0.5f, 2, 1}},
    {"COLOR", "vec4", "", "--set value=0.25,0.5,2,0", {0.25f, 0.5f, 2, 0}},
    {"COLOR", "vec4", "", "--set value=#00ff0066", {0, 1, 0, 0.4f}},
    {"COLOR", "vec4", "QL_setParamValue(control, [255, 51.9, 0, 102]);", "", {1, 0.2f, 0, 0.4f}},
    {"BOOL", "int", "", "--set value=true", {1, 1, 1, 1}},
    {"POPUP", "int", kChoices.c_str(), "--set value=Add", {3, 3, 3, 3}},
    {"POPUP", "int", kChoices.c_str(), "--set value=3", {2, 2, 2, 2}},
    {"POPUP", "int", kChoices.c_str(), "--set value=1", {1, 1, 1, 1}},
};

class Render : public ToolTest {
protected:
    void SetUp() override { writeSamples<std::uint8_t>("in.argb", std::vector<std::uint8_t>(2 * 2 * 4, 255)); }

    const std::string raw = " -i in.argb --size 2x2 --depth 8 ";
};

TEST_F(Render, ValuesReachTheShader) {
    writeSamples<float>("wide.argb", std::vector<float>(4 * 2 * 4));
    for (const ValueCase& row : kCases) {
        addEffect("fx", ControlEffect(row.kind, row.type, row.setUp));
        const ToolRun result =
            run(std::string("render fx -i wide.argb --size 4x2 --depth 32 -o out.argb ") + row.option);
        ASSERT_EQ(result.err, "");
        const auto pixel = readSamples<float>("out.argb");
        for (const std::size_t channel : {0, 1, 2, 3})
            EXPECT_FLOAT_EQ(pixel[(channel + 1) % 4], row.shown[channel]) << row.kind << ' ' << row.option;
    }
}

struct WrongValueCase {
    const char* kind;
    const char* option;
    const char* words;
};

constexpr WrongValueCase kWrongValues[] = {
    {"FLOAT", "--set value=nan", "value: \"nan\" is not a value for it; it takes a number"},
    {"FLOAT", "--set value=1.5x", "value: \"1.5x\" is not a value for it; it takes a number"},
    {"FLOAT", "--set value", "--set value: write it as NAME=VALUE"},
    {"FLOAT", "--set other=1", "other: the effect has no such control; its controls are:\n  value  \"The label\""},
    {"FLOAT", "--layer value=in.argb", "value: is not a layer; set it with --set"},
    {"POINT", "--set value=1,2", "value: \"1,2\" is not a value for it; it takes x,y,z"},
    {"COLOR", "--set value=#12345",
     "value: \"#12345\" is not a value for it; it takes red,green,blue[,alpha] from 0 to 1, "
     "or #rrggbb[aa]"},
    {"BOOL", "--set value=yes", "value: \"yes\" is not a value for it; it takes true or false"},
    {"POPUP", "--set value=11",
     "value: \"11\" is not a value for it; it takes one of the entries, or its number from 1 "
     "(0|1|2|3|4|5|6|7|8|9)"},
    {"LAYER", "--set value=1", "value: is a layer; give it a picture with --layer value=FILE"},
    {"TEXTURE", "--set value=1", "value: groups, paths and textures have no value that can be set; leave it out"},
};

TEST_F(Render, WrongValuesAreRefusedWithWhatTheControlTakes) {
    for (const WrongValueCase& wrong : kWrongValues) {
        addEffect("fx", ControlEffect(wrong.kind, "float"));
        const ToolRun result = run("render fx" + raw + "-o out.png " + wrong.option);
        EXPECT_EQ(result.err, std::string("quillon: error: ") + wrong.words + "\n");
        EXPECT_EQ(result.status, 2) << wrong.option;
    }
    EXPECT_FALSE(exists("out.png"));
}

TEST_F(Render, LabelsOfSeveralControlsAndHiddenControlsAreRefused) {
    addEffect("fx", {{"fx.js",
                      "function setup() {\n"
                      "  QL_initParam('a', QL_Type.FLOAT, 'Same');\n"
                      "  QL_initParam('b', QL_Type.FLOAT, 'Same');\n"
                      "  QL_setParamFlags(QL_initParam('c', QL_Type.FLOAT, 'Hidden'), 1);\n"
                      "}\nfunction draw() {}\n"}});
    EXPECT_EQ(run("render fx" + raw + "-o out.png --set Same=1").err,
              "quillon: error: Same: several controls have this label; use a name:\n  a  \"Same\"\n  b  \"Same\"\n");
    EXPECT_EQ(run("render fx" + raw + "-o out.png --set c=1").status, 2);
    EXPECT_EQ(run("render fx" + raw + "-o out.png --set b=1").status, 0);
}

TEST_F(Render, LayersAndFramesComeFromPatternsOrOnePictureForAll) {
    addEffect("fx", {{"fx.js",
                      "var shader, layer;\n"
                      "function setup() {\n"
                      "  layer = QL_initParam('map', QL_Type.LAYER, 'Map');\n"
                      "  shader = QL_initShader('s', 'uniform sampler2D a, b; uniform float t; void main() "
                      "{ vec2 p = gl_TexCoord[0].st; gl_FragColor = vec4(texture2D(a, p).r, "
                      "texture2D(b, p).g, t, 1.0); }');\n}\n"
                      "function draw() {\n"
                      "  QL_setShaderParamVal(shader, 'a', QL_getSequenceTexture());\n"
                      "  QL_setShaderParamVal(shader, 'b', layer);\n"
                      "  QL_setShaderParamVal(shader, 't', QL_getTime());\n"
                      "  QL_renderShader(shader, QL_getSequenceRT(), true);\n}\n"}});
    const auto plain = [this](const std::string& name, float red, float green) {
        writeSamples<float>(name, {1, red, green, 0});
    };
    for (int frame = 8; frame <= 12; frame += 2) {
        plain("in." + std::string(frame < 10 ? "00" : "0") + std::to_string(frame) + ".argb", static_cast<float>(frame),
              0);
    }
    plain("map.argb", 0, 0.5f);
    const ToolRun result =
        run("render fx -i in.###.argb --layer Map=map.argb --size 1x1 --depth 32 -o out%04d.argb "
            "--frames 8-13x2 --fps 4");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, "out0008.argb\nout0010.argb\nout0012.argb\n");
    for (const auto& [name, frame] :
         {std::pair("out0008.argb", 8.0f), {"out0010.argb", 10.0f}, {"out0012.argb", 12.0f}}) {
        EXPECT_EQ(readSamples<float>(name), (std::vector<float>{1, frame, 0.5f, frame / 4})) << name;
    }
    ASSERT_EQ(run("render fx -i in.008.argb --layer map=map.argb --size 1x1 --depth 32 -o one.argb --time 1.5").err,
              "");
    EXPECT_EQ(readSamples<float>("one.argb"), (std::vector<float>{1, 8, 0.5f, 1.5f}));
    ASSERT_EQ(run("render fx -i in.008.argb --layer map=map.argb --size 1x1 --depth 32 -o ntsc##.argb --frames 8-8"
                  " --fps 29.97")
                  .err,
              "");
    EXPECT_FLOAT_EQ(readSamples<float>("ntsc08.argb")[3], 8 / 29.97f);
}

TEST_F(Render, APictureThatTheDriverCannotTakeIsNamed) {
    addEffect("fx", {{"fx.js", "function setup() {}\nfunction draw() {}\n"}});
    writeSamples<std::uint8_t>("long.argb", std::vector<std::uint8_t>(99999 * 4));
    const ToolRun result = run("render fx -i long.argb --size 99999x1 --depth 8 -o out.png");
    EXPECT_EQ(result.err.rfind("quillon: error: the input has 99999x1 pixels; the graphics driver takes up to ", 0), 0u)
        << result.err;
    EXPECT_EQ(result.status, 1);
}

TEST_F(Render, ASequenceStopsAtTheFirstFrameThatFailsAndKeepsTheOnesBefore) {
    addEffect("fx", {{"fx.js", "function setup() {}\nfunction draw() {\n  if (QL_getTime() > 1) x();\n}\n"}});
    const ToolRun result = run("render fx" + raw + "-o o##.png --frames 1-9 --fps 2");
    EXPECT_EQ(result.out, "o01.png\no02.png\n");
    EXPECT_EQ(result.err,
              "fx/fx.js:3:25: error: nothing declares x; declare it with var, or look for a typing error [script]\n"
              "quillon: error: stopped at frame 3\n");
    EXPECT_EQ(result.status, 1);
    EXPECT_FALSE(exists("o03.png"));
}

struct WrongLine {
    const char* arguments;
    const char* words;  // a part of what is said
};

constexpr WrongLine kWrongLines[] = {
    {"", "no command"},
    {"render fx -i a.png -o out.jpg", "out.jpg: pictures are written as .png, .exr, .tif, .tiff or .argb"},
    {"render fx -i a.png -o out.png --route smart --host premiere", "--route smart: Premiere Pro"},
    {"render fx -i a.png -o out.png --host-version 13", "--host-version 13: write it as MAJOR.MINOR"},
    {"render fx -i a.png -o out.png --host-version 12.5", "12.5: After Effects is played from 13.0 on"},
    {"render fx -i a.png -o out##.png --frames 1-5x0", "--frames 1-5x0: write it as FIRST-LAST"},
    {"render fx -i a.png -o out.png --pixel-aspect 1/0", "--pixel-aspect 1/0: write it as NUM/DEN"},
    {"render fx -i a.png -o out.png --time 1e9", "--time: a host's moments are within"},
    {"render fx -i a.argb -o out.png --depth 8", "a.argb: a raw buffer has no header"},
    {"render fx -i a.png -o out.png --size 2x2", "--size is for .argb pictures"},
    {"render fx -i a.png -o out.png --time 1 --frames 1-2", "--frames"},
    {"render fx -i a.png -o out##.png --frames 5-1", "--frames 5-1: write it as FIRST-LAST"},
    {"render fx -i a.png -o out.png --frames 1-2", "out.png: all frames would be written to one file"},
    {"render fx -i a.png -o out##.png", "out##.png: has a place for the frame number"},
    {"render fx -i a.png -o out##%d.png --frames 1-2", "more than one place"},
    {"render fx -i a.png -o out##.png --frames 1-9 --part 3/2", "--part 3/2: there are not so many pieces"},
    {"render fx -i a.png -o out.png --resume", "--part and --resume are for sequences"},
};

TEST_F(Render, WrongCommandLinesEndWithTwoAndSayWhatIsWrong) {
    for (const WrongLine& line : kWrongLines) {
        const ToolRun result = run(line.arguments);
        EXPECT_EQ(result.status, 2) << line.arguments;
        EXPECT_EQ(result.out, "") << line.arguments;
        EXPECT_EQ(result.err.rfind("quillon: error: ", 0), 0u) << line.arguments << "\n" << result.err;
        EXPECT_NE(result.err.find(line.words), std::string::npos) << line.arguments << "\n" << result.err;
    }
}

}  // namespace

}  // namespace quillon::test
