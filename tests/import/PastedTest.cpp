#include <algorithm>
#include <cmath>

#include "ImportTest.h"

namespace quillon::test {

namespace {

using Pasted = ImportTest;

// The text adds to its color before it has written it, and counts on 0.
TEST_F(Pasted, UniformsAndChannelsAreFed) {
    import("uniforms", "uniforms.glsl", R"(
        uniform float iTime; uniform sampler2D iChannel0; out vec4 unused;
        #define TIME iTime
        const float RENDERSIZE = 1.0;
        void mainImage(out vec4 color, in vec2 at) {
            color += texture(iChannel0, at / iResolution.xy);
            if (at.x < 1.0) color = vec4(at, TIME * RENDERSIZE, iFrame);
            else if (at.x < 2.0) color = vec4(iChannelResolution[0].xy, iChannelResolution[2].z, iTimeDelta);
            else if (at.x < 3.0) color = iMouse;
            else if (at.x < 4.0) color += 1.0;
            else if (at.x < 5.0) color = texelFetch(iChannel1, ivec2(at), 0);
            else if (at.x < 6.0) color.rg = iDate.xy + iChannelTime[1];
        })");
    const auto expected = [](const Color& mouse) {
        return [mouse](int x, int y) {
            switch (x) {
                case 0:
                    return Color{0.5f, y + 0.5f, 2, 1};
                case 1:
                    return Color{8, 6, 0, 1};
                case 2:
                    return Color{mouse[0], mouse[1], mouse[2], 1};
                case 3: {
                    const Color c = Input(x, y);
                    return Color{c[0] + 1, c[1] + 1, c[2] + 1, 1};
                }
                case 4:
                    return Layer(x, y);
                case 5:
                    return Color{2000, 0, Input(x, y)[2], 1};
                default: {
                    Color c = Input(x, y);
                    c[3] = 1;  // the image is opaque
                    return c;
                }
            }
        };
    };
    ExpectPicture(render("uniforms", "--time 2 --layer iChannel1=layer.argb"), expected({0, 0, 0, 0}));
    ExpectPicture(render("uniforms", "--time 2 --layer iChannel1=layer.argb --set iMouse=3,2"),
                  expected({3, 4, 3, -4}));
}

TEST_F(Pasted, DeclaredUniformsAndExposedConstantsAreControls) {
    import("sliders", "sliders.glsl", R"(
        uniform float speed; // min=-1 max=3 default=2
        uniform int count; //! [1, 4, 9] "How many"
        uniform vec4 tint;
        uniform sampler2D other;
        //! float glow = 0.5 [0.0, 2.0]
        #define STEPS 3
        #define SCALE 0.25
        #iUniform float more = 1.5 in { 0.0, 5.0 }
        void mainImage(out vec4 color, in vec2 at) {
            color.rgb = vec3(speed, float(count), glow);
            if (at.x > 1.0) color.rgb = vec3(float(STEPS), SCALE, tint.g * more);
            if (at.x > 2.0) color.rgb = texture(other, at / iResolution.xy).rgb;
        })",
           "--expose STEPS --expose SCALE");
    EXPECT_NE(run("params sliders").out.find("How many"), std::string::npos);
    const auto picture = render("sliders", "--layer other=layer.argb");
    EXPECT_EQ(picture[0], (Color{2, 4, 0.5f, 1}));
    EXPECT_EQ(picture[1], (Color{3, 0.25f, 1.5f, 1}));
    EXPECT_EQ(picture[2][2], Layer(2, 0)[2]);
    const auto moved = render("sliders", "--set count=6.4 --set STEPS=7 --set SCALE=0.5 --set glow=2 --set tint=0,0,0");
    EXPECT_EQ(moved[0], (Color{2, 6, 2, 1}));
    EXPECT_EQ(moved[1], (Color{7, 0.5f, 0, 1}));
}

// Buffer A counts on, B reads A of this frame, the image reads B.
constexpr const char* kBufferA =
    "void mainImage(out vec4 c, vec2 p) { c = texture(iChannel0, p / iResolution.xy) + step(vec4(-2.0)); }";
constexpr const char* kBufferB =
    "void mainImage(out vec4 c, vec2 p) { c = 2.0 * texture(iChannel0, p / iResolution.xy); }";
constexpr const char* kImage =
    "void mainImage(out vec4 c, vec2 p) { c = texture(iChannel1, p / iResolution.xy) + iTime * 0.0; }";
constexpr const char* kCommon = "vec4 step(vec4 v) { return v * -0.25; }\n";

TEST_F(Pasted, BuffersGoOnAndAreReadInTheirOrder) {
    writeFile("a.glsl", kBufferA);
    writeFile("b.glsl", kBufferB);
    writeFile("common.glsl", kCommon);
    import("buffers", "image.glsl", kImage,
           "--common common.glsl --buffer-a a.glsl --buffer-b b.glsl --channel a:0=self --channel b:0=a");
    const std::string project = R"([{"ver": "0.1", "info": {"name": "Counts", "username": "Ann"}, "renderpass": [
        {"type": "image", "name": "Image", "outputs": [], "code": ")" +
                                std::string(kImage) + R"(",
         "inputs": [{"channel": 1, "ctype": "buffer", "id": "258"}]},
        {"type": "common", "name": "Common", "code": "vec4 step(vec4 v) { return v * -0.25; }"},
        {"type": "buffer", "name": "Buffer B", "outputs": [{"channel": 0, "id": "258"}], "code": ")" +
                                kBufferB + R"(",
         "inputs": [{"channel": 0, "type": "buffer", "id": "257"}]},
        {"type": "buffer", "name": "Buffer A", "outputs": [{"channel": 0, "id": "257"}], "code": ")" +
                                kBufferA + R"(",
         "inputs": [{"channel": 0, "type": "buffer", "id": "257"}]}]}])";
    import("project", "project.json", project);
    EXPECT_NE(readFile("project/config.xml").find("Counts. By Ann"), std::string::npos);
    for (const char* effect : {"buffers", "project"}) {
        SCOPED_TRACE(effect);
        const auto frames = renderFrames(effect, 3);
        for (int i = 0; i < 3; ++i)
            ExpectPicture(frames[i], [i](int, int) { return Color{i + 1.0f, i + 1.0f, i + 1.0f, 1}; });
    }
}

TEST_F(Pasted, ProjectsSayHowChannelsAreRead) {
    const std::string warnings = import("read", "read.json", R"({"renderpass": [{"type": "image",
        "code": "void mainImage(out vec4 c, vec2 p) { c = texture(iChannel0, (p + vec2(8.25, -6.25)) / iResolution.xy); }",
        "inputs": [{"channel": 0, "ctype": "buffer", "id": "1",
                    "sampler": {"filter": "nearest", "wrap": "repeat", "srgb": "true"}}]},
        {"type": "buffer", "name": "Buffer A", "outputs": [{"id": "1"}],
         "code": "void mainImage(out vec4 c, vec2 p) { c = texture(iChannel0, p / iResolution.xy + 1.0); }",
         "inputs": [{"channel": 0, "ctype": "video", "sampler": {"filter": "linear", "wrap": "repeat"}}]}]})");
    EXPECT_NE(warnings.find("image: iChannel0 asks for linear light"), std::string::npos) << warnings;
    ExpectPicture(render("read"), [](int x, int y) {
        const Color c = Input(x, y);
        return Color{c[0], c[1], c[2], 1};
    });
}

TEST_F(Pasted, RefusalsAndWrongCommandLines) {
    const struct {
        const char* text;
        const char* arguments;
        int status;
        const char* words;
    } kRows[] = {
        {"void mainCubemap(out vec4 c, vec2 p, vec3 o, vec3 d) {}", "", 1, "mainCubemap and mainSound"},
        {"uint hash(uint x) { return x; }\nvoid mainImage(out vec4 c, vec2 p) {}", "", 1, "x.glsl:1: error: uint: "},
        {"uniform mat2 m;\nvoid mainImage(out vec4 c, vec2 p) {}", "", 1,
         "x.glsl:1: error: uniform mat2 m: no control"},
        {"void mainImage(out vec4 c, vec2 p) { c = texture(iChannel0, p); }", "--channel image:0=b", 1,
         "give its text with"},
        {"void mainImage(out vec4 c, vec2 p) {\n c = texture(iChannel0, vec3(p, 1)); }", "", 1,
         "x.glsl:2: error: texture at three numbers: there are no cube maps"},
        {"void mainImage(out vec4 c, vec2 p) {}", "--channel image:9=a", 2, "write it as PASS:N=SOURCE"},
        {"void mainImage(out vec4 c, vec2 p) {}", "--channel c:0=a", 2, "there is no such pass"},
        {"void mainImage(out vec4 c, vec2 p) {}", "--expose NAME", 1, "there is no line \"#define NAME NUMBER\""},
        {"void mainImage(out vec4 c, vec2 p) {\n c = texture(iChannel[1], p); }", "", 1,
         "x.glsl:2: error: iChannel: write iChannel0"},
        {"#iChannel0 \"file://pictures\\no.png\"\nvoid mainImage(out vec4 c, vec2 p) { c = texture(iChannel0, p); }",
         "", 1, "no file \"pictures/no.png\""},
        {R"({"Shader": {"renderpass": [{"type": "buffer", "name": "Buffer A", "code": "void mainImage(out vec4 c, vec2 p) {}"}]}})",
         "", 1, "it has no image pass"},
    };
    for (const auto& [text, arguments, status, words] : kRows) {
        writeFile("x.glsl", text);
        const ToolRun result = run(std::string("new x --from x.glsl ") + arguments);
        EXPECT_EQ(result.status, status) << words << result.err;
        EXPECT_NE(result.err.find(words), std::string::npos) << words << "\n" << result.err;
        EXPECT_FALSE(exists("x")) << words;
    }
}

}  // namespace

}  // namespace quillon::test
