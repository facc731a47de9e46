#include <algorithm>
#include <cmath>
#include <filesystem>

#include "ImportTest.h"

namespace quillon::test {

namespace {

using Isf = ImportTest;

constexpr const char* kInput = R"({"NAME": "inputImage", "TYPE": "image"})";

// An ISF file with these inputs, further keys and body.
std::string File(const std::string& inputs, const std::string& body, const std::string& keys = "") {
    return "/*{ \"ISFVSN\": \"2\", \"INPUTS\": [" + inputs + "]" + keys + " }*/\n" + body;
}

TEST_F(Isf, EachFunctionReadsWhereItSays) {
    const Formula atPlace = [](int x, int y) { return Input(x, y); };
    const Formula right = [](int x, int y) { return Input(std::min(x + 1, kWidth - 1), std::min(y + 2, kHeight - 1)); };
    const struct {
        const char* read;
        Formula expected;
    } kRows[] = {
        {"IMG_THIS_PIXEL(inputImage)", atPlace},
        {"IMG_THIS_NORM_PIXEL(inputImage)", atPlace},
        {"IMG_NORM_PIXEL(inputImage, isf_FragNormCoord)", atPlace},
        {"IMG_NORM_PIXEL(inputImage,vec3(vv_FragNormCoord, 0.0))", atPlace},
        {"IMG_PIXEL(inputImage, gl_FragCoord.xy + vec2(1.0, 2.0))", right},
        {"texture2D(inputImage,(gl_FragCoord.xy + vec2(1.0, 2.0)) / RENDERSIZE)", right},
        {"READ(inputImage, gl_FragCoord)", atPlace},
        {"vec4(IMG_SIZE(inputImage), _inputImage_imgSize)",
         [](int, int) {
             return Color{8, 6, 8, 6};
         }},
    };
    std::string body =
        "varying vec2 isf_FragNormCoord;\n#define READ(image, p) IMG_PIXEL(image, p.xy)\nvoid main() {\n";
    for (std::size_t i = 0; i < std::size(kRows); ++i)
        body += "if (row == " + std::to_string(i) + ") gl_FragColor=" + kRows[i].read + ";\n";
    import("reads", "reads.fs",
           File(std::string(kInput) + R"(, {"NAME": "row", "TYPE": "long", "VALUES": [0, 1, 2, 3, 4, 5, 6, 7]})",
                body + "}"));
    for (std::size_t i = 0; i < std::size(kRows); ++i) {
        SCOPED_TRACE(kRows[i].read);
        ExpectPicture(render("reads", "--set row=" + std::to_string(i)), kRows[i].expected);
    }
}

TEST_F(Isf, ControlsGiveTheShaderWhatTheFileMeans) {
    const std::string warnings = import("inputs", "inputs.fs",
                                        File(std::string(kInput) + R"(,
        {"NAME": "amount", "TYPE": "float", "DEFAULT": 3, "MIN": 2, "MAX": -2},
        {"NAME": "on", "TYPE": "bool", "DEFAULT": 1.0},
        {"NAME": "kind", "TYPE": "long", "VALUES": [12, 8, 4], "DEFAULT": 4},
        {"NAME": "tint", "TYPE": "color", "DEFAULT": [1.0, 0.0, 0.2]},
        {"NAME": "click", "TYPE": "event"},
        {"NAME": "spot", "TYPE": "point2D", "DEFAULT": [0.25, 0], "MIN": [0, 0], "MAX": [1, 1]},
        {"NAME": "wide", "TYPE": "point2D", "DEFAULT": [-1, 1], "MIN": [-1, -1], "MAX": [1, 1]},
        {"NAME": "pixels", "TYPE": "point2D", "DEFAULT": [100, 200], "MAX": [400, 400]},
        {"NAME": "output", "TYPE": "float", "DEFAULT": 0.75},
        {"NAME": "list", "TYPE": "float", "DEFAULT": [1]},)",
                                             R"(
        uniform vec4 tint; uniform float extra;
        void main() {
            int x = int(gl_FragCoord.x);
            gl_FragColor = tint;
            if (x == 1) gl_FragColor = vec4(amount, on ? 1 : 0, kind, click);
            if (x == 2) gl_FragColor = vec4(spot, wide);
            if (x == 3) gl_FragColor = vec4(pixels, output, 1.0 + extra + list);
        })"));
    EXPECT_NE(warnings.find("inputs.fs:2: warning: input \"amount\": its default 3 is outside"), std::string::npos);
    EXPECT_NE(warnings.find("inputs.fs:11: warning: input \"list\": its DEFAULT is no number"), std::string::npos);
    EXPECT_NE(warnings.find("warning: uniform extra: it is no input, and stays 0"), std::string::npos);
    EXPECT_NE(warnings.find("inputs.fs:6: warning: input \"click\": a click cannot last one frame"), std::string::npos);
    const auto colors = [](const std::vector<Color>& picture) {
        return std::vector<Color>(picture.begin(), picture.begin() + 4);
    };
    const auto near = [](const std::vector<Color>& found, const std::vector<Color>& wanted) {
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            for (std::size_t k = 0; k < 4; ++k) EXPECT_NEAR(found[i][k], wanted[i][k], 2e-4f) << i << " " << k;
        }
    };
    near(colors(render("inputs")), {{1, 0, 0.2f, 1}, {3, 1, 4, 0}, {0.25f, 0, -1, 1}, {2, 3, 0.75f, 1}});
    near(colors(render("inputs", "--set kind=8 --set click=1 --set spot=2,1.5 --set wide=8,6 --set pixels=1,2")),
         {{1, 0, 0.2f, 1}, {3, 1, 8, 1}, {0.25f, 0.75f, 1, -1}, {1, 4, 0.75f, 1}});
}

TEST_F(Isf, LabelsStayApartAfterTheHostsCut) {
    import("labels", "labels.fs",
           File(R"(
        {"NAME": "a", "TYPE": "float", "LABEL": "The very same label, up to here: 1"},
        {"NAME": "b", "TYPE": "float", "LABEL": "The very same label, up to here: 2"})",
                "void main() { gl_FragColor = vec4(a, b, 0.0, 1.0); }"));
    const std::string params = run("params labels --json").out;
    EXPECT_NE(params.find("\"The very same label, up to here\""), std::string::npos) << params;
    EXPECT_NE(params.find("\"The very same label, up to he 2\""), std::string::npos) << params;
}

TEST_F(Isf, PassesDrawIntoTargetsOfTheirSizes) {
    import("passes", "passes.fs",
           File(std::string(kInput) + R"(, {"NAME": "part", "TYPE": "float", "DEFAULT": 0.5})", R"(
        void main() {
            if (PASSINDEX == 0) gl_FragColor = vec4(gl_FragCoord.xy, RENDERSIZE) / 2.0;
            else if (PASSINDEX == 1) gl_FragColor = vec4(0.4, 2.0, IMG_PIXEL(halved, vec2(1.5)).xz);
            else gl_FragColor = gl_FragCoord.x < 4.0 ? IMG_PIXEL(halved, vec2(0.5, 2.5)) : IMG_THIS_PIXEL(bytes);
        })",
                R"x(, "PASSES": [
            {"TARGET": "halved", "WIDTH": "$WIDTH*$part", "HEIGHT": "max(floor($HEIGHT / 2.0), 1)", "FLOAT": true},
            {"TARGET": "bytes"}, {}])x"));
    const auto picture = render("passes");
    ExpectPicture(picture, [](int x, int) {
        return x < 4 ? Color{0.25f, 1.25f, 2, 1.5f} : Color{102 / 255.0f, 1, 191 / 255.0f, 1};
    });
}

TEST_F(Isf, StateGoesOnFromFrameToFrame) {
    const std::string targets = R"({"TARGET": "later", "PERSISTENT": 1, "FLOAT": true},
                                   {"TARGET": "state", "PERSISTENT": true, "FLOAT": 1})";
    const std::string body = R"(
        void main() {
            float old = IMG_THIS_PIXEL(state).r;
            if (PASSINDEX == 0) gl_FragColor = vec4(old);
            else gl_FragColor = FRAMEINDEX == 0 ? vec4(0.25, 0.0, 0.0, 1.0)
                                                : vec4(old * 2.0, TIMEDELTA, float(FRAMEINDEX), IMG_THIS_PIXEL(later).r);
        })";
    // The last pass's target is the frame.
    import("state", "state.fs", File("", body, ", \"PASSES\": [" + targets + "]"));
    const auto frames = renderFrames("state", 3);
    ExpectPicture(frames[0], [](int, int) { return Color{0.25f, 0, 0, 1}; });
    ExpectPicture(frames[1], [](int, int) { return Color{0.5f, 0.04f, 1, 0.25f}; });
    ExpectPicture(frames[2], [](int, int) { return Color{1, 0.04f, 2, 0.5f}; });
}

TEST_F(Isf, FramesAreCountedByTimeWhereNothingIsKept) {
    import("count", "count.fs", File("", "void main() { gl_FragColor = vec4(FRAMEINDEX, TIME, TIMEDELTA, DATE.w); }"));
    ExpectPicture(render("count", "--time 2"), [](int, int) { return Color{50, 2, 0.04f, 2}; });
    ExpectPicture(render("count", "--time 2 --set frameRate=10"), [](int, int) { return Color{20, 2, 0.1f, 2}; });
    ExpectPicture(render("count"), [](int, int) { return Color{0, 0, 0, 0}; });
}

TEST_F(Isf, OtherImagesAreLayersFilesOrSilence) {
    // Two pixels, blue above red: an uncompressed TGA, whose bottom row comes first.
    std::string tga("\0\0\2\0\0\0\0\0\0\0\0\0\1\0\2\0\40\0", 18);
    tga += std::string("\0\0\xff\xff", 4) + std::string("\xff\0\0\xff", 4);
    std::filesystem::create_directory(pathOf("pictures"));
    writeFile("pictures/grain.tga", tga);
    import("images", "images.fs",
           File(R"({"NAME": "startImage", "TYPE": "image"}, {"NAME": "endImage", "TYPE": "image"},
        {"NAME": "progress", "TYPE": "float", "DEFAULT": 0.25}, {"NAME": "sound", "TYPE": "audio"})",
                R"(
        void main() {
            vec2 p = isf_FragNormCoord;
            gl_FragColor = mix(IMG_THIS_PIXEL(startImage), IMG_THIS_PIXEL(endImage), progress);
            if (gl_FragCoord.x < 1.0) gl_FragColor = IMG_NORM_PIXEL(grain, vec2(0.5, p.y < 0.5 ? 0.25 : 0.75));
            if (gl_FragCoord.x > 7.0) gl_FragColor = vec4(IMG_SIZE(endImage), IMG_NORM_PIXEL(sound, p).xy);
        })",
                R"(, "IMPORTED": {"grain": {"PATH": "pictures\\\\grain.tga"}})"));
    const auto expected = [](bool hasLayer) {
        return [hasLayer](int x, int y) {
            if (x == 0) return y < 3 ? Color{1, 0, 0, 1} : Color{0, 0, 1, 1};
            if (x == 7) return Color{8, 6, 0.5f, 0.5f};
            Color color = Input(x, y);
            for (std::size_t i = 0; i < 4; ++i) color[i] = 0.75f * color[i] + (hasLayer ? 0.25f * Layer(x, y)[i] : 0);
            return color;
        };
    };
    ExpectPicture(render("images", "--layer endImage=layer.argb"), expected(true));
    ExpectPicture(render("images"), expected(false));
}

TEST_F(Isf, TheVertexStageRunsAtTheCornersOnly) {
    writeFile("edge.vs", R"(
        #define COUNT 2
        const float by = 0.25;
        varying vec2 left;
        varying float steps[COUNT];
        void shade() { steps[1] = isf_FragNormCoord.y * 4.0; }
        void main() {
            isf_vertShaderInit();
            left = clamp(isf_FragNormCoord - vec2(by, 0.0), 0.0, 1.0);
            steps[0] = 1;
            shade();
        })");
    import("edge", "edge.fs", File("", R"(
        #if __VERSION__ <= 120
        varying vec2 left; varying float steps[2]; float by = 0.5;
        #else
        in vec2 left; in float steps[2];
        #endif
        vec4 shade() { return vec4(left, steps[0], steps[1]); }
        void main() { gl_FragColor = shade(); })"));
    // Straight between the corners, where the clamped values are 0 and 0.75.
    ExpectPicture(render("edge"), [](int x, int y) {
        return Color{0.75f * (x + 0.5f) / 8, (y + 0.5f) / 6, 1, 4 * (y + 0.5f) / 6};
    });

    writeFile("moved.vs",
              "void main() { isf_vertShaderInit(); gl_Position.xy = gl_Position.xy * 0.5 + vec2(0.5, 0.0); }");
    EXPECT_EQ(import("moved", "moved.fs",
                     File("", "void main() { gl_FragColor = vec4(isf_FragNormCoord, gl_FragCoord.x, 1.0); }")),
              "");
    ExpectPicture(render("moved"), [](int x, int y) {
        const float u = (x + 0.5f - 4) / 4, v = (y + 0.5f - 1.5f) / 3;
        return u < 0 || u > 1 || v < 0 || v > 1 ? Color{} : Color{u, v, x + 0.5f, 1};
    });
}

// What the fourth corner does follows from the others, or not, at some values of the inputs.
TEST_F(Isf, CornersThatMoveFreelyAreRefused) {
    const struct {
        const char* statements;
        int status;
        const char* words;
    } kRows[] = {
        {"gl_Position.xy = mat2(cos(TIME), sin(TIME), -sin(TIME), cos(TIME)) * gl_Position.xy * size + a; tilt = a;", 0,
         ""},
        {"gl_Position.w += isf_FragNormCoord.y * size; tilt = texture2D(image, vec2(0.5)).xy;", 0, ""},
        {"vec2 p = isf_FragNormCoord; if (on) gl_Position.xy = mix(mix(a, b, p.x), mix(b, -a, p.x), p.y) * size;", 1,
         "x.vs:2: error: gl_Position: the four corners move freely"},
        {"gl_Position.x += IMG_NORM_PIXEL(image, isf_FragNormCoord).r;", 1, "x.vs:2: error: gl_Position: the four"},
        {"tilt = vec2(isf_FragNormCoord.x * isf_FragNormCoord.y, 0.0);", 0, "x.vs: warning: varying tilt: its values"},
    };
    for (const auto& [statements, status, words] : kRows) {
        writeFile("x.vs", std::string("varying vec2 tilt; void main() { isf_vertShaderInit();\n") + statements + "}");
        writeFile("x.fs", File(R"({"NAME": "image", "TYPE": "image"}, {"NAME": "size", "TYPE": "float"},
            {"NAME": "on", "TYPE": "bool"}, {"NAME": "a", "TYPE": "point2D"}, {"NAME": "b", "TYPE": "point2D"})",
                               "varying vec2 tilt; void main() { gl_FragColor = vec4(tilt, isf_FragNormCoord); }"));
        std::filesystem::remove_all(pathOf("x"));
        const ToolRun made = run("new x --from x.fs");
        EXPECT_EQ(made.status, status) << statements << made.err;
        if (*words == '\0')
            EXPECT_EQ(made.err, "") << statements;
        else
            EXPECT_NE(made.err.find(words), std::string::npos) << statements << made.err;
    }
}

TEST_F(Isf, TheFilesWordsAndCommentsStay) {
    import("kept", "kept.fs",
           "\xEF\xBB\xBF" + File("",
                                 "// License: \xE9 by me\r\n// main (see below)\r\nvoid main() {\r\n"
                                 "  gl_FragColor = vec4(1.0); // keep\r\n}\r\n",
                                 R"(, // a note
                                                     "DESCRIPTION": "Tom & <Jerry>", "CREDIT": "Ann",
                                                     "CATEGORIES": ["Color Effect",], "VSN": "2.3")"));
    const std::string shader = readFile("kept/kept.frag");
    EXPECT_EQ(shader.find("// License: \xC3\xA9 by me\n"), 0u) << shader;
    EXPECT_NE(shader.find("gl_FragColor = vec4(1.0); // keep"), std::string::npos) << shader;
    const std::string config = readFile("kept/config.xml");
    for (const char* words :
         {"<ABOUT>kept: Tom &amp; &lt;Jerry&gt;. By Ann</ABOUT>", "<CATEGORY>Color Effect</CATEGORY>",
          "<MAJOR_VERSION>2</MAJOR_VERSION>", "<MINOR_VERSION>3</MINOR_VERSION>"})
        EXPECT_NE(config.find(words), std::string::npos) << config;
}

}  // namespace

}  // namespace quillon::test
