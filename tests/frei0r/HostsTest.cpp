// Plug-ins in programs that others have written. Their frames are those of the tool, to the byte.

#include <dlfcn.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <bit>
#include <utility>

#include "ToolTest.h"

namespace quillon::test {
namespace {

constexpr unsigned kFrames = 20;

// A host that was built without the address sanitizer can load plug-ins that were built with it only when the
// sanitizer's library is there first. Its leak check is off: what hosts do not free is not ours to find, and the tests
// of the plug-in's own functions have it on.
std::string SanitizerEnvironment() {
    Dl_info runtime{};
    const void* const start = dlsym(RTLD_DEFAULT, "__asan_init");
    if (!start || dladdr(start, &runtime) == 0) return "";
    return std::string("LD_PRELOAD=") + runtime.dli_fname + " ASAN_OPTIONS=detect_leaks=0 ";
}

class Hosts : public ToolTest {
protected:
    void pack(const std::string& effect, const std::string& plugin) {
        const ToolRun packed = run("pack " + effect + " -o " + plugin + ".so --for frei0r");
        ASSERT_EQ(packed.status, 0) << packed.err;
    }

    // Runs a host with the plug-ins of this test's folder.
    ToolRun tryHost(const std::string& command) {
        const std::string own = std::exchange(tool, "env");
        ToolRun result =
            run("FREI0R_PATH=\"" + pathOf("") + "\" QT_QPA_PLATFORM=offscreen " + SanitizerEnvironment() + command);
        tool = own;
        return result;
    }

    ToolRun runHost(const std::string& command) {
        ToolRun result = tryHost(command);
        EXPECT_EQ(result.status, 0) << command << "\n" << result.err;
        return result;
    }

    void ffmpeg(const std::string& input, const std::string& filter, const std::string& output) {
        runHost("ffmpeg -loglevel error -y " + input + " -vf \"" + filter + "\" -frames:v " + std::to_string(kFrames) +
                " -f rawvideo -pix_fmt rgba " + output);
    }
};

struct SampleCase {
    const char* effect;
    const char* ffmpegValues;  // by position; null: a mixer, which ffmpeg cannot use
    const char* ffmpegTool;    // the same for the tool
    const char* meltValues;    // by name and by index
    const char* meltTool;
    bool grows = false;  // the output is larger than the input

    friend void PrintTo(const SampleCase& row, std::ostream* out) { *out << row.effect; }
};

class HostsOfSamples : public Hosts, public ::testing::WithParamInterface<SampleCase> {
protected:
    void prepare(unsigned frameWidth, unsigned frameHeight) {
        width = std::to_string(frameWidth);
        height = std::to_string(frameHeight);
        bytes = std::size_t{kFrames} * frameWidth * frameHeight * 4;
        effect = (SourceFolder() / "effects" / GetParam().effect).string();
        pack(effect, GetParam().effect);
        EXPECT_EQ(run("chart -o chart.png --size " + width + "x" + height).status, 0);
    }

    // Whether "host.raw" is what the tool renders with these options.
    void compare(const std::string& options) {
        const char* const frames = GetParam().grows ? "tool.##.png" : "tool.##.argb";
        const ToolRun rendered =
            run("render " + effect + " -i chart.png -o " + frames + " --depth 8 --frames 0-19 --fps 25 " + options);
        ASSERT_EQ(rendered.status, 0) << rendered.err;
        std::string expected;
        if (GetParam().grows) {  // cropped to the input's frame, around which the tool has put the rest
            ffmpeg("-framerate 25 -i tool.%02d.png",
                   "crop=" + width + ":" + height + ":floor(iw/2)-floor(" + width + "/2):floor(ih/2)-floor(" + height +
                       "/2)",
                   "tool.raw");
            expected = readFile("tool.raw");
        } else {
            for (unsigned frame = 0; frame < kFrames; ++frame)
                expected += readFile("tool." + std::to_string(frame / 10) + std::to_string(frame % 10) + ".argb");
            for (std::size_t i = 0; i + 3 < expected.size(); i += 4)
                std::rotate(expected.begin() + i, expected.begin() + i + 1, expected.begin() + i + 4);
        }
        EXPECT_EQ(readFile("host.raw").size(), bytes);
        EXPECT_TRUE(readFile("host.raw") == expected);
    }

    std::string width, height, effect;
    std::size_t bytes = 0;
};

TEST_P(HostsOfSamples, FfmpegRendersWhatTheToolRenders) {
    const SampleCase& row = GetParam();
    if (!row.ffmpegValues) return;
    prepare(640, 360);
    ffmpeg("-loop 1 -framerate 25 -i chart.png", "frei0r=" + std::string(row.effect) + row.ffmpegValues, "host.raw");
    compare(row.ffmpegTool);
}

TEST_P(HostsOfSamples, MeltRendersWhatTheToolRenders) {
    const SampleCase& row = GetParam();
    prepare(641, 359);
    writeFile("profile",
              "description=of the test\nframe_rate_num=25\nframe_rate_den=1\nprogressive=1\nsample_aspect_num=1\n"
              "sample_aspect_den=1\ncolorspace=709\nwidth=" +
                  width + "\nheight=" + height + "\ndisplay_aspect_num=" + width + "\ndisplay_aspect_den=" + height +
                  "\n");
    const std::string service = row.ffmpegValues ? "-attach frei0r." + std::string(row.effect)
                                                 : "-track avformat:chart.png out=19 -transition frei0r." +
                                                       std::string(row.effect) + " in=0 out=19 a_track=0 b_track=1";
    // Not by melt's own reader of pictures, which hangs in the system's translations where the sanitizer is preloaded,
    // with and without a plug-in.
    const std::string melt =
        "melt -silent -profile ./profile avformat:chart.png out=19 " + service + " " + row.meltValues +
        " -consumer avformat:host.raw f=rawvideo vcodec=rawvideo pix_fmt=rgba mlt_image_format=rgba real_time=-1 an=1";
    // One run of melt in a hundred ends before its consumer begins, with exit status 0 and an empty file, also without
    // any plug-in; and some wait for a consumer that has not begun.
    constexpr int kMostRuns = 5;
    ToolRun result;
    for (int runs = 0; runs < kMostRuns && (runs == 0 || readFile("host.raw").empty()); ++runs)
        result = tryHost("timeout -s KILL 40 " + melt);
    EXPECT_EQ(result.status, 0) << melt << "\n" << result.err;
    compare(row.meltTool);
}

constexpr SampleCase kSamples[] = {
    {"glow", ":0.25|0.05|0.2|0xff8000|0.5",
     "--set threshold=0.5 --set radius=50 --set intensity=2 --set tint=#ff8000ff --set mode=Screen",
     "Threshold=0.25 Tint=#ff8000 4=0.5", "--set threshold=0.5 --set tint=#ff8000ff --set mode=Screen"},
    {"lens", ":1|0.1|0|0.5|0.25/0.75", "--set shape=Pincushion --set k1=0.2 --set zoom=205 --set center=160,270",
     "Shape=0 \"Distortion (k1)=0.25\"", "--set shape=Barrel --set k1=0.5", /*grows=*/true},
    {"echo", "", "", "Trail=0.5", "--set mode=2"},
    {"palette", ":0.6|0.083|0.5|y|y", "--set palette=13 --set dither=2 --set serpentine=true --set grayscale=true",
     "Palette=0 \"Grayscale first=1\"", "--set palette=1 --set grayscale=true"},
    {"displace", nullptr, "", "\"Horizontal amount=0.55\"", "--layer map=chart.png --set amountX=100"},
    {"matte", nullptr, "", "\"Take from=0.5\" Invert=1", "--layer matte=chart.png --set channel=3 --set invert=1"},
    {"clouds", "", "", "", ""},
    {"fringe", "", "", "", ""},
    {"grade", "", "", "\"Saturation (percent)=0.5\"", "--set saturation=150"},
    {"grain", "", "", "", ""},
    {"halftone", ":1", "--set inks=2", "\"Turn the screens=0.5625\"", "--set angle=45"},
    {"ink", "", "", "", ""},
    {"kaleidoscope", "", "", "", ""},
    {"mosaic", ":0", "--set shape=1", "", ""},
    {"streaks", "", "", "Rays=1", "--set rays=8"},
};
INSTANTIATE_TEST_SUITE_P(Samples, HostsOfSamples, ::testing::ValuesIn(kSamples),
                         [](const auto& row) { return std::string(row.param.effect); });

// Two instances share an engine and no values; a source needs no input; melt lists what pack has stored.
TEST_F(Hosts, TakeAGeneratorTwiceAndListItsControls) {
    addEffect("fx",
              {{"fx.js",
                "var s, group, c, p; function setup() {"
                " QL_initParam('g', QL_Type.GROUP_START, 'Look: one'); c = QL_initParam('c', QL_Type.COLOR, 'C');"
                " QL_setParamValue(c, [255, 0, 51, 255]); QL_initParam('e', QL_Type.GROUP_END, '');"
                " p = QL_initParam('p', QL_Type.FLOAT, 'C'); QL_setParamMinMax(p, 0, 4);"
                " var h = QL_initParam('h', QL_Type.FLOAT, 'Hidden'); QL_setParamFlags(h, 1);"
                " s = QL_initShader('s'); }"
                "function draw() { QL_setShaderParam(s, c); QL_setShaderParam(s, p);"
                " QL_setShaderParamVal(s, 'seconds', QL_getTime()); QL_renderShader(s, QL_getSequenceRT(), true); }"},
               {"s.frag",
                "uniform vec4 c; uniform float p, seconds;\n"
                "void main() { gl_FragColor = vec4(c.r, p, c.b, seconds); }"},
               {"config.xml", std::string(kConfig) + "<GENERATOR>1</GENERATOR>"}});
    ASSERT_NO_FATAL_FAILURE(pack("fx", "fx"));
    runHost(
        "ffmpeg -loglevel error -y -filter_complex \""
        "frei0r_src=16x16:5:fx:0x000000|0.05[a];frei0r_src=16x16:5:fx:0x0000ff|0.25[b];[a][b]hstack\""
        " -frames:v 4 -f rawvideo -pix_fmt rgba two.raw");
    const auto pixels = readSamples<std::uint32_t>("two.raw");
    ASSERT_EQ(pixels.size(), 4u * 32 * 16);
    EXPECT_EQ(pixels[0], 0x00003300u);
    EXPECT_EQ(pixels[16], 0x00FFFF00u);
    EXPECT_EQ(pixels[3 * 32 * 16], 0x99003300u);  // at 0.6 seconds
    EXPECT_EQ(pixels[3 * 32 * 16 + 16], 0x99FFFF00u);
    const ToolRun listed = runHost("melt -query producer=frei0r.fx");
    for (const char* words : {"title: Look  one / C\n", "title: C\n", "0 is 0, 1 is 4"})
        EXPECT_NE(listed.out.find(words), std::string::npos) << words << "\n" << listed.out;
    EXPECT_EQ(listed.out.find("Hidden"), std::string::npos);
}

}  // namespace
}  // namespace quillon::test
