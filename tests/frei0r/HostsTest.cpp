// Plug-ins in programs that others have written. Their frames are those of the tool, to the byte.

#include <gmock/gmock.h>

#include <utility>

#include "ToolTest.h"

namespace quillon::test {
namespace {

constexpr const char* kFrames = "20";

class Hosts : public ToolTest {
protected:
    void pack(const std::string& effect, const std::string& plugin) {
        const ToolRun packed = run("pack " + effect + " -o " + plugin + ".so --for frei0r");
        ASSERT_EQ(packed.status, 0) << packed.err;
    }

    // Runs a host with the plug-ins of this test's folder.
    ToolRun runHost(const std::string& command, const std::string& environment = "") {
        const std::string own = std::exchange(tool, "env");
        ToolRun result =
            run("FREI0R_PATH=\"" + pathOf("") + "\" QT_QPA_PLATFORM=offscreen " + environment + " " + command);
        tool = own;
        EXPECT_EQ(result.status, 0) << command << "\n" << result.err;
        return result;
    }

    ToolRun ffmpeg(const std::string& input, const std::string& filter, const std::string& output,
                   const std::string& environment = "") {
        return runHost("ffmpeg -loglevel error -y " + input + " -vf \"" + filter + "\" -frames:v " + kFrames +
                           " -f rawvideo -pix_fmt rgba " + output,
                       environment);
    }
};

const std::string kChart = "-loop 1 -framerate 25 -i chart.png";

struct SampleCase {
    const char* name;
    const char* effect;
    unsigned width, height;
    const char* ffmpegFilter;  // null: melt runs it
    const char* meltService;
    const char* toolOptions;
};

class HostsOfSamples : public Hosts, public ::testing::WithParamInterface<SampleCase> {};

TEST_P(HostsOfSamples, RenderWhatTheToolRenders) {
    const SampleCase& row = GetParam();
    const std::string width = std::to_string(row.width), height = std::to_string(row.height);
    const std::string effect = (SourceFolder() / "effects" / row.effect).string();
    ASSERT_NO_FATAL_FAILURE(pack(effect, row.effect));
    ASSERT_EQ(run("chart -o chart.png --size " + width + "x" + height).status, 0);
    if (row.ffmpegFilter) {
        ffmpeg(kChart, row.ffmpegFilter, "host.raw");
    } else {
        writeFile("profile",
                  "description=of the test\nframe_rate_num=25\nframe_rate_den=1\nprogressive=1\nsample_aspect_num=1\n"
                  "sample_aspect_den=1\ncolorspace=709\nwidth=" +
                      width + "\nheight=" + height + "\ndisplay_aspect_num=" + width +
                      "\ndisplay_aspect_den=" + height + "\n");
        runHost(std::string("melt -silent -profile ./profile chart.png out=19 ") + row.meltService +
                " -consumer avformat:host.raw f=rawvideo vcodec=rawvideo pix_fmt=rgba mlt_image_format=rgba"
                " real_time=-1 an=1");
    }
    const ToolRun rendered =
        run("render " + effect + " -i chart.png -o tool.##.png --depth 8 --frames 0-19 --fps 25 " + row.toolOptions);
    ASSERT_EQ(rendered.status, 0) << rendered.err;
    // Larger outputs are cropped to the input's frame, around which the tool has put the rest.
    ffmpeg("-framerate 25 -i tool.%02d.png",
           "crop=" + width + ":" + height + ":floor(iw/2)-floor(" + width + "/2):floor(ih/2)-floor(" + height + "/2)",
           "tool.raw");
    EXPECT_EQ(readFile("host.raw").size(), std::size_t{20} * row.width * row.height * 4);
    EXPECT_TRUE(readFile("host.raw") == readFile("tool.raw"));
}

constexpr SampleCase kSamples[] = {
    {"glow_ffmpeg", "glow", 640, 360, "frei0r=glow:0.25|0.05|0.2|0xff8000|0.5", nullptr,
     "--set threshold=0.5 --set radius=50 --set intensity=2 --set tint=#ff8000ff --set mode=Screen"},
    {"lens_ffmpeg", "lens", 640, 360, "frei0r=lens:1|0.1|0|0.5|0.25/0.75", nullptr,
     "--set shape=Pincushion --set k1=0.2 --set zoom=205 --set center=160,270"},
    {"echo_ffmpeg", "echo", 640, 360, "frei0r=echo", nullptr, ""},
    {"palette_ffmpeg", "palette", 640, 360, "frei0r=palette:0.6|0.083|0.5|y|y", nullptr,
     "--set palette=13 --set dither=2 --set serpentine=true --set grayscale=true"},
    {"glow_melt", "glow", 641, 359, nullptr, "-attach frei0r.glow Threshold=0.25 Tint=#ff8000 4=0.5",
     "--set threshold=0.5 --set tint=#ff8000ff --set mode=Screen"},
    {"lens_melt", "lens", 641, 359, nullptr, "-attach frei0r.lens Shape=0 \"Distortion (k1)=0.25\"",
     "--set shape=Barrel --set k1=0.5"},
    {"echo_melt", "echo", 641, 359, nullptr, "-attach frei0r.echo Trail=0.5", "--set mode=2"},
    {"palette_melt", "palette", 641, 359, nullptr, "-attach frei0r.palette Palette=0 \"Grayscale first=1\"",
     "--set palette=1 --set grayscale=true"},
    {"displace_melt", "displace", 641, 359, nullptr,
     "-track chart.png out=19 -transition frei0r.displace in=0 out=19 a_track=0 b_track=1 \"Horizontal amount=0.55\"",
     "--layer map=chart.png --set amountX=100"},
};
INSTANTIATE_TEST_SUITE_P(Samples, HostsOfSamples, ::testing::ValuesIn(kSamples),
                         [](const auto& row) { return std::string(row.param.name); });

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
