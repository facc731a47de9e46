#include <ImfChannelList.h>
#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfInputFile.h>
#include <ImfTiledOutputFile.h>
#include <half.h>
#include <lodepng.h>

#include <cmath>
#include <limits>

#include "ToolTest.h"

// Pictures in all their forms, through an effect that hands its input on. What is in the files is checked with the
// formats' own libraries.

namespace quillon::test {

namespace {

class Pictures : public ToolTest {
protected:
    void SetUp() override { addCopyEffect(); }

    // Renders and expects that all is well.
    void render(const std::string& input, const std::string& output, const std::string& options = "") {
        const ToolRun result = run("render copy -i " + input + " -o " + output + " " + options);
        EXPECT_EQ(result.err, "");
        EXPECT_EQ(result.out, output + "\n");
        EXPECT_EQ(result.status, 0);
    }

    // 8- or 16-bit PNG with alpha, of one row; its words have the machine's order here.
    void writePng(const std::string& name, const std::vector<std::uint16_t>& rgba, unsigned bits) {
        std::vector<unsigned char> bytes;
        for (const std::uint16_t value : rgba) {
            if (bits == 16) bytes.push_back(static_cast<unsigned char>(value >> 8));
            bytes.push_back(static_cast<unsigned char>(value));
        }
        const auto width = static_cast<unsigned>(rgba.size() / 4);
        ASSERT_EQ(lodepng::encode(pathOf(name), bytes, width, 1, LCT_RGBA, bits), 0u);
    }
    std::vector<std::uint16_t> readPng16(const std::string& name) {
        std::vector<unsigned char> file;
        std::vector<unsigned char> bytes;
        unsigned width = 0;
        unsigned height = 0;
        lodepng::State state;
        state.info_raw.colortype = LCT_RGBA;
        state.info_raw.bitdepth = 16;
        lodepng::load_file(file, pathOf(name));
        EXPECT_EQ(lodepng::decode(bytes, width, height, state, file), 0u);
        EXPECT_EQ(state.info_png.color.bitdepth, 16u);
        std::vector<std::uint16_t> rgba;
        for (std::size_t i = 0; i < bytes.size(); i += 2) {
            rgba.push_back(static_cast<std::uint16_t>(bytes[i] << 8 | bytes[i + 1]));
        }
        return rgba;
    }
};

TEST_F(Pictures, PngKeepsItsBitsWhenNoDepthIsAskedFor) {
    writePng("8.png", {10, 20, 30, 40, 0, 255, 1, 254}, 8);
    writePng("16.png", {65535, 0, 2, 32768, 40000, 50000, 60000, 1000}, 16);
    render("8.png", "8.argb");
    render("16.png", "16.argb");
    render("16.png", "back.png");
    EXPECT_EQ(readSamples<std::uint8_t>("8.argb"), (std::vector<std::uint8_t>{40, 10, 20, 30, 254, 0, 255, 1}));
    // 0 to 65535 becomes 0 to 32768, to the nearest.
    EXPECT_EQ(readSamples<std::uint16_t>("16.argb"),
              (std::vector<std::uint16_t>{16384, 32768, 0, 1, 500, 20000, 25000, 30000}));
    EXPECT_EQ(readPng16("back.png"), (std::vector<std::uint16_t>{65535, 0, 2, 32768, 39999, 49999, 59999, 1000}));
}

TEST_F(Pictures, DepthsConvertToTheNearestAndFullScaleToFullScale) {
    writePng("in.png", {0, 255, 128, 1, 127, 64, 254, 255}, 8);
    render("in.png", "16.argb", "--depth 16");
    EXPECT_EQ(readSamples<std::uint16_t>("16.argb"),
              (std::vector<std::uint16_t>{129, 0, 32768, 16448, 32768, 16320, 8224, 32639}));
    render("in.png", "32.argb", "--depth 32");
    const auto reals = readSamples<float>("32.argb");
    EXPECT_FLOAT_EQ(reals[0], 1 / 255.0f);
    EXPECT_EQ(reals[2], 1.0f);
    EXPECT_FLOAT_EQ(reals[3], 128 / 255.0f);
    // Down again, with what is outside the scale cut, and black where there is no number.
    const float none = std::numeric_limits<float>::quiet_NaN();
    writeSamples<float>("wild.argb", {1, -0.5f, 1.5f, none, 0.5f, 0.25f, 0.75f, 1e30f});
    render("wild.argb", "wild.png", "--size 2x1 --depth 32");
    EXPECT_EQ(readPng16("wild.png"), (std::vector<std::uint16_t>{0, 65535, 0, 65535, 16384, 49151, 65535, 32768}));
}

TEST_F(Pictures, ExrIsPremultipliedOutsideAndStraightInside) {
    writeSamples<float>("in.argb", {0.5f, 2, 1, -1, 0, 7, 7, 7});
    render("in.argb", "out.exr", "--size 2x1 --depth 32");
    {
        Imf::InputFile file(pathOf("out.exr").c_str());
        float pixels[2][4] = {};
        Imf::FrameBuffer frameBuffer;
        const char* names[] = {"R", "G", "B", "A"};
        for (int i = 0; i < 4; ++i) {
            EXPECT_EQ(file.header().channels()[names[i]].type, Imf::FLOAT);
            frameBuffer.insert(names[i], Imf::Slice(Imf::FLOAT, reinterpret_cast<char*>(&pixels[0][i]), 16, 32));
        }
        file.setFrameBuffer(frameBuffer);
        file.readPixels(0, 0);
        EXPECT_EQ(std::vector<float>(pixels[0], pixels[0] + 8), (std::vector<float>{1, 0.5f, -0.5f, 0.5f, 0, 0, 0, 0}));
    }
    render("out.exr", "back.argb");
    EXPECT_EQ(readSamples<float>("back.argb"), (std::vector<float>{0.5f, 2, 1, -1, 0, 0, 0, 0}));
}

TEST_F(Pictures, TiledHalfExrWithoutAlphaFillsItsDisplayWindow) {
    // A data window of 2 by 1 at (1, 1) in a frame of 3 by 2.
    Imf::Header header(Imath::Box2i({0, 0}, {2, 1}), Imath::Box2i({1, 1}, {2, 1}));
    header.setTileDescription(Imf::TileDescription(32, 32, Imf::ONE_LEVEL));
    half pixels[2][3] = {{1.0f, 0.5f, 0.25f}, {8.0f, 4.0f, 2.0f}};
    Imf::FrameBuffer frameBuffer;
    const char* names[] = {"R", "G", "B"};
    for (int i = 0; i < 3; ++i) {
        header.channels().insert(names[i], Imf::Channel(Imf::HALF));
        char* origin = reinterpret_cast<char*>(&pixels[0][i]) - sizeof pixels[0] - sizeof pixels;
        frameBuffer.insert(names[i], Imf::Slice(Imf::HALF, origin, sizeof pixels[0], sizeof pixels));
    }
    {
        Imf::TiledOutputFile file(pathOf("in.exr").c_str(), header);
        file.setFrameBuffer(frameBuffer);
        file.writeTile(0, 0);
    }
    render("in.exr", "out.argb");
    std::vector<float> expected(24, 0.0f);
    const float drawn[] = {1, 1, 0.5f, 0.25f, 1, 8, 4, 2};
    std::copy(std::begin(drawn), std::end(drawn), expected.begin() + 16);
    EXPECT_EQ(readSamples<float>("out.argb"), expected);
}

// Rows that are no multiple of a vector, with content for each filter: flat, ramps across and down, and noise.
TEST_F(Pictures, WrittenFilesHaveOneFormAndEverySample) {
    constexpr std::uint32_t kWidth = 37, kHeight = 24;
    std::vector<std::uint16_t> argb;
    std::uint32_t random = 1;
    for (std::uint32_t i = 0; i < kWidth * kHeight * 4; ++i) {
        const std::uint32_t y = i / (4 * kWidth), x = i / 4 % kWidth;
        random = random * 1664525 + 1013904223;
        const std::uint32_t values[] = {7, x * 800 + i % 4, y * 1000 + i % 4, x * y * 30, random >> 17};
        argb.push_back(static_cast<std::uint16_t>(std::min(values[y * 5 / kHeight], 32768u)));
    }
    writeSamples("16.argb", argb);
    writeSamples("8.argb", std::vector<std::uint8_t>(argb.begin(), argb.end()));
    writeSamples("32.argb", std::vector<float>(argb.begin(), argb.end()));
    const std::string size = "--size 37x24 --depth ";
    for (const std::string depth : {"8", "16"}) {
        for (const std::string options : {"", "--no-alpha", "--png-level 0", "--png-level 9"}) {
            render(depth + ".argb", "out.png", size + depth + " " + options);
            std::vector<unsigned char> file, decoded;
            unsigned width = 0, height = 0;
            lodepng::State state;
            lodepng::load_file(file, pathOf("out.png"));
            state.decoder.color_convert = 0;
            ASSERT_EQ(lodepng::decode(decoded, width, height, state, file), 0u) << depth << options;
            const bool hasAlpha = options != "--no-alpha";
            EXPECT_EQ(state.info_png.color.colortype, hasAlpha ? LCT_RGBA : LCT_RGB);
            std::vector<unsigned char> expected;
            for (std::size_t i = 0; i < argb.size(); i += 4) {
                for (const std::size_t c :
                     hasAlpha ? std::vector<std::size_t>{1, 2, 3, 0} : std::vector<std::size_t>{1, 2, 3}) {
                    const unsigned word = static_cast<unsigned>(argb[i + c] / 32768.0 * 65535 + 0.5);
                    if (depth == "16") expected.push_back(static_cast<unsigned char>(word >> 8));
                    expected.push_back(static_cast<unsigned char>(depth == "16" ? word : argb[i + c]));
                }
            }
            EXPECT_EQ(decoded, expected) << depth << options;
        }
    }
    for (const std::string depth : {"8", "16", "32"}) {
        render(depth + ".argb", "out.tif", size + depth);
        render("out.tif", "back.argb");
        EXPECT_EQ(readFile("back.argb"), readFile(depth + ".argb")) << depth;
    }
    render("32.argb", "out.exr", size + "32 --exr half --exr-compression zips --pixel-aspect 2/1 --no-alpha");
    const Imf::InputFile exr(pathOf("out.exr").c_str());
    EXPECT_EQ(exr.header().channels()["R"].type, Imf::HALF);
    EXPECT_EQ(exr.header().channels().findChannel("A"), nullptr);
    EXPECT_EQ(exr.header().compression(), Imf::ZIPS_COMPRESSION);
    EXPECT_EQ(exr.header().pixelAspectRatio(), 2);
}

TEST_F(Pictures, DamagedInputsAreRefusedAndNothingIsWritten) {
    ASSERT_EQ(run("chart -o good.png --size 64x64").status, 0);
    ASSERT_EQ(run("chart -o good.exr --size 64x64").status, 0);
    ASSERT_EQ(run("chart -o good.tif --size 64x64").status, 0);
    const std::string png = readFile("good.png");
    const std::string exr = readFile("good.exr");
    std::string huge = png;
    huge.replace(16, 8, std::string("\x7f\xff\xff\xff\x7f\xff\xff\xff", 8));
    const std::size_t window = exr.find("dataWindow");
    std::string hugeExr = exr;
    hugeExr.replace(window + 11 + 6 + 4 + 8, 8, std::string("\xff\xff\1\0\xff\xff\1\0", 8));
    const std::pair<const char*, std::string> files[] = {
        {"cut.png", png.substr(0, png.size() / 2)},
        {"huge.png", huge},
        {"cut.exr", exr.substr(0, exr.size() / 2)},
        {"huge.exr", hugeExr},
        {"cut.tif", readFile("good.tif").substr(0, 300)},
        {"words.txt", "no picture at all"},
        {"short.argb", std::string(15, '\0')},
        {"beyond.argb", std::string("\1\x80\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 16)},
    };
    for (const auto& [name, content] : files) {
        writeFile(name, content);
        const bool isRaw = std::string(name).ends_with(".argb");
        const ToolRun result =
            run(std::string("render copy -i ") + name + " -o out.png" + (isRaw ? " --size 2x1 --depth 16" : ""));
        EXPECT_EQ(result.status, 1) << name;
        EXPECT_EQ(result.err.rfind(std::string("quillon: error: ") + name + ": cannot be read", 0), 0u) << result.err;
        EXPECT_FALSE(exists("out.png")) << name;
    }
    EXPECT_EQ(run("render copy -i good.png -o nowhere/out.png").status, 1);
    std::filesystem::create_directory(pathOf("taken.png"));
    EXPECT_EQ(run("render copy -i good.png -o taken.png").status, 1);
    for (const std::string& name : list()) EXPECT_NE(name.front(), '.') << "left: " << name;
}

}  // namespace

}  // namespace quillon::test
