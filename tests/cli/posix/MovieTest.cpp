#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "../ToolTest.h"

// Movies through the ffmpeg of this system, and frames on standard output.

namespace quillon::test {

namespace {

class Movies : public ToolTest {
protected:
    // The effect fills the picture with time and what it is given: red is the time in seconds.
    void SetUp() override {
        addEffect("fx", {{"fx.js",
                          "var s;\nfunction setup() { s = QL_initShader('s', 'uniform sampler2D a; uniform float t; "
                          "void main() { gl_FragColor = vec4(t, texture2D(a, gl_TexCoord[0].st).gb, 0.5); }'); }\n"
                          "function draw() {\n  QL_setShaderParamVal(s, 'a', QL_getSequenceTexture());\n"
                          "  QL_setShaderParamVal(s, 't', QL_getTime());\n"
                          "  QL_renderShader(s, QL_getSequenceRT(), true);\n}\n"}});
        std::vector<std::uint8_t> pixels;
        for (int i = 0; i < 33 * 17; ++i) pixels.insert(pixels.end(), {255, 0, 200, 100});
        writeSamples("in.argb", pixels);
    }

    // What ffprobe has to say of the movie's picture.
    std::string probe(const std::string& name, const std::string& entries) {
        const std::string command = "ffprobe -v error -select_streams v:0 -of csv=p=0 -show_entries stream=" + entries +
                                    " '" + pathOf(name) + "' >'" + pathOf("probed") + "'";
        EXPECT_EQ(std::system(command.c_str()), 0);
        return readFile("probed");
    }

    std::vector<std::uint8_t> pixelOf(const std::string& name) {
        const std::string bytes = readFile(name);
        return {bytes.begin(), bytes.begin() + 4};
    }

    const std::string raw = " --size 33x17 --depth 8 ";
};

struct MovieRow {
    const char* name;
    const char* options;
    const char* entries;
    const char* found;
    std::vector<int> pixel;  // alpha, red, green, blue of frame 5 when the movie is read again
};

TEST_F(Movies, KeepColorsRateAndLength) {
    // Half transparent over the background: (t, 200, 100) halved. Frame 5 of 10 a second is at half a second.
    const MovieRow kRows[] = {
        {"even.mp4", "", "pix_fmt,width,height,color_space", "yuv420p,34,18,bt709", {255, 64, 100, 50}},
        {"blue.mp4", "--background 0,0,1", "nb_frames,r_frame_rate", "10,10/1", {255, 64, 100, 178}},
        {"deep.mov", "", "codec_name,width,color_space", "prores,33,bt709", {128, 128, 200, 100}},
        {"web.webm", "", "codec_name,r_frame_rate", "vp9,10/1", {255, 128, 200, 100}},  // read without its alpha
    };
    for (const MovieRow& row : kRows) {
        const std::string name = row.name;
        const ToolRun made = run("render fx -i in.argb" + raw + row.options + " --frames 0-9 --fps 10 -o " + name);
        ASSERT_EQ(made.err, "") << name;
        EXPECT_EQ(made.out, name + "\n");
        std::string found = probe(name, row.entries);
        std::ranges::replace(found, '\n', ' ');
        // Its order of entries is its own.
        std::string wanted = row.found;
        for (std::size_t at = 0; at != std::string::npos;) {
            const std::size_t comma = wanted.find(',', at);
            EXPECT_NE(found.find(wanted.substr(at, comma - at)), std::string::npos) << found;
            at = comma == std::string::npos ? comma : comma + 1;
        }
        addCopyEffect();
        const ToolRun read = run("render copy -i " + name + " --depth 8 -o " + name + ".%d.argb");
        EXPECT_EQ(read.err, "");
        EXPECT_EQ(std::ranges::count(read.out, '\n'), 10) << name;
        const auto pixel = pixelOf(name + ".5.argb");
        for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(pixel[i], row.pixel[i], 4) << name << " channel " << i;
    }
    // A piece, and every third frame at another rate: frame 6 of 20 a second is at 0.3 seconds.
    EXPECT_EQ(run("render copy -i deep.mov --depth 8 -o p%d.argb --frames 0-9x3 --fps 20 --part 2/2").out,
              "p6.argb\np9.argb\n");
    EXPECT_NEAR(pixelOf("p6.argb")[1], std::lround(0.3 * 255), 4);
    // Both sides at once.
    EXPECT_EQ(run("render fx -i deep.mov -o again.gif").out, "again.gif\n");
    EXPECT_EQ(run("render copy -i deep.mov -o p%d.argb --frames 8-12").err,
              "quillon: error: deep.mov: ends before frame 10\nquillon: error: stopped at frame 10\n");
}

struct InputRow {
    const char* arguments;  // of ffmpeg, to make it of 20 frames of 32x16 at 10 a second, frame N at 10 N of 255
    const char* file;
    const char* options;
    int frames;
    std::size_t width;
    std::vector<std::pair<int, int>> grays;  // frame, gray
};

TEST_F(Movies, AreReadByTheirTimeAndTurnedUpright) {
    addCopyEffect();
    const auto ffmpeg = [this](const std::string& arguments) {
        const std::string command = "cd '" + pathOf("") + "' && ffmpeg -v error " + arguments;
        return std::system(command.c_str());
    };
    ASSERT_EQ(ffmpeg("-f lavfi -i color=black:s=32x16:r=10:d=2,format=gray,geq=lum=N*10 -c:v ffv1 plain.mkv"), 0);
    const InputRow kRows[] = {
        {"-vf \"select='lt(n,3)+between(n,8,9)+gte(n,15)'\" -vsync vfr -c:v ffv1",
         "varies.mkv",
         "--fps 10",
         20,
         32,
         {{2, 20}, {7, 20}, {8, 80}, {14, 90}, {19, 190}}},
        {"-pix_fmt yuv420p -c:v libx264 -qp 0", "turned.mp4", "", 20, 16, {{5, 50}}},
        {"-map_metadata:s -1 -c:v ffv1 -f matroska - | cat >",
         "unknown.mkv",
         "--frames 3-4",
         2,
         32,
         {{3, 30}, {4, 40}}},
        {"-c:v ffv1", "pl%d##.mkv", "--downsample 3", 20, 11, {{7, 70}}},
    };
    std::filesystem::create_directory(pathOf("a%d#b##"));
    for (const InputRow& row : kRows) {
        const std::string file = row.file;
        const std::string turned = file == "turned.mp4" ? "turned_.mp4" : file;
        ASSERT_EQ(ffmpeg("-i plain.mkv " + std::string(row.arguments) + " '" + turned + "'"), 0) << file;
        // The flag is written when the stream is copied.
        if (turned != file) {
            ASSERT_EQ(ffmpeg("-i turned_.mp4 -c copy -metadata:s:v rotate=90 turned.mp4"), 0);
        }
        const std::string output = "a%d#b##/" + std::to_string(&row - kRows);
        const ToolRun result =
            run("render copy -i '" + file + "' --depth 8 -o '" + output + ".%d.argb' " + row.options);
        EXPECT_EQ(result.err, "") << file;
        EXPECT_EQ(std::ranges::count(result.out, '\n'), row.frames) << file;
        for (const auto& [frame, gray] : row.grays) {
            const auto pixels = readSamples<std::uint8_t>(output + "." + std::to_string(frame) + ".argb");
            const std::size_t height = row.width == 16 ? 32 : row.width == 11 ? 6 : 16;
            ASSERT_EQ(pixels.size(), 4 * row.width * height) << file;
            EXPECT_NEAR(pixels[1], gray, 3) << file << " frame " << frame;
        }
    }
    EXPECT_EQ(run("render copy -i unknown.mkv -o o.mp4").err,
              "quillon: error: unknown.mkv: does not say how long it is; say which frames with --frames\n");
    EXPECT_EQ(run("render copy -i plain.mkv -o deep.mp4 --depth 32 --downsample 3").err, "");
    EXPECT_EQ(probe("deep.mp4", "width,height,pix_fmt"), "12,6,yuv420p\n");
}

TEST_F(Movies, AreWholeOrAbsent) {
    writeFile("no.mp4", "no movie");
    const std::pair<std::string, const char*> kRows[] = {
        {"-i in.argb" + raw + "-o out.mp4 --frames 0-3 --codec-args '-c:v nonsense'",
         "out.mp4: ffmpeg cannot write it: Unknown encoder 'nonsense'"},
        {"-i in.argb" + raw + "-o nowhere/out.mp4 --frames 0-3", "nowhere/out.mp4: cannot be written"},
        {"-i in.argb" + raw + "-o out.mp4", "out.mp4: is a movie; say which frames with --frames"},
        {"-i no.mp4 -o out.mp4", "no.mp4: cannot be read as a movie"},
        {"-i missing.mov -o out.mp4", "missing.mov: no such file"},
        {"-i in.argb" + raw + "-o out.mp4 --frames 0-1 --resume", "--resume: is for sequences of pictures"},
    };
    for (const auto& [arguments, words] : kRows) {
        const ToolRun result = run("render fx " + arguments);
        EXPECT_NE(result.status, 0) << arguments;
        EXPECT_NE(result.err.find(words), std::string::npos) << arguments << ": " << result.err;
    }
    // A full disk, which ffmpeg meets in the middle of a movie: a larger file than the effect's module is too large.
    const ToolRun full =
        run("chart -o chart.png --size 640x360; '" + tool + "' render fx -i chart.png -o out.mov --frames 0-199 )",
            "( ulimit -f 40000;");
    EXPECT_EQ(full.status, 1);
    EXPECT_NE(full.err.find("out.mov: ffmpeg cannot write it: "), std::string::npos) << full.err;
    std::filesystem::remove(pathOf("chart.png"));
    const ToolRun killed = run("render fx -i in.argb" + raw +
                                   "-o out.mp4 --frames 0-99999 & while [ -z \"$(cat /proc/$!/task/*/children)\" ]; do "
                                   "sleep 0.05; done; kill -KILL $(cat /proc/$!/task/*/children); wait $! )",
                               "(");
    EXPECT_EQ(killed.status, 1);
    EXPECT_NE(killed.err.find("out.mp4: ffmpeg cannot write it: it was killed or crashed"), std::string::npos);
    const ToolRun missing = run("render fx -i in.argb" + raw + "-o out.mp4 --frames 0-3", "PATH=/nowhere");
    EXPECT_NE(missing.err.find("movies need the program ffmpeg"), std::string::npos) << missing.err;
    const ToolRun ended = run("render fx -i in.argb" + raw +
                                  "-o out.mp4 --frames 0-99999 & while [ -z \"$(ls -a | grep quillon-temp)\" ]; do "
                                  "sleep 0.05; done; kill -TERM $!; wait $! )",
                              "(");
    EXPECT_EQ(ended.status, 143);
    EXPECT_NE(ended.err.find("quillon: stopped after "), std::string::npos) << ended.err;
    EXPECT_EQ(list(), (std::vector<std::string>{"fx", "in.argb", "no.mp4"}));
}

TEST_F(Movies, FramesGoToStandardOutput) {
    const std::string render = "render fx -i in.argb" + raw + "--frames 0-9 --fps 10 -o ";
    ASSERT_EQ(run(render + "f%d.argb").err, "");
    std::string frames;
    for (int i = 0; i < 10; ++i) frames += readFile("f" + std::to_string(i) + ".argb");
    EXPECT_EQ(run(render + "-").out, frames);
    const std::string video = run(render + "- --format y4m").out;
    const std::string header = "YUV4MPEG2 W33 H17 F10/1 Ip A1:1 C444 XCOLORRANGE=LIMITED\n";
    EXPECT_EQ(video.substr(0, 20), header.substr(0, 20));
    EXPECT_EQ(video.size(), header.size() + 10 * (6 + 3 * 33 * 17));
    // Y' of frame 0, which is (0, 100, 50): 16 + 219 * (0.7152 * 100 + 0.0722 * 50) / 255.
    EXPECT_EQ(static_cast<std::uint8_t>(video.at(header.size() + 6)), 81);
    const ToolRun closed = run(render + "- | head -c 10 )", "(");
    EXPECT_EQ(closed.err, "");
    EXPECT_EQ(closed.out, frames.substr(0, 10));
}

}  // namespace

}  // namespace quillon::test
