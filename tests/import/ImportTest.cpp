#include "ImportTest.h"

#include <algorithm>
#include <sstream>

namespace quillon::test {

ImportTest::ImportTest() {
    for (const auto& [name, color] : {std::pair("in.argb", &Input), std::pair("layer.argb", &Layer)}) {
        std::vector<float> samples;
        for (int y = kHeight - 1; y >= 0; --y) {
            for (int x = 0; x < kWidth; ++x) {
                const Color c = color(x, y);
                samples.insert(samples.end(), {c[3], c[0], c[1], c[2]});
            }
        }
        writeSamples(name, samples);
    }
}

std::string ImportTest::import(const std::string& name, const std::string& file, const std::string& text,
                               const std::string& arguments) {
    writeFile(file, text);
    const ToolRun made = run("new " + name + " --from " + file + " " + arguments);
    EXPECT_EQ(made.status, 0) << made.err;
    // Small test shaders may well give one color, or more than full scale; nothing else is to be found.
    const ToolRun checked = run("check " + name);
    EXPECT_EQ(checked.status, 0) << checked.err;
    std::istringstream findings(checked.err);
    for (std::string line; std::getline(findings, line);)
        EXPECT_TRUE(line.starts_with(name + ": warning: ") && line.ends_with(" [render]")) << line;
    return made.err;
}

std::vector<Color> ImportTest::read(const std::string& file) {
    const auto samples = readSamples<float>(file);
    std::vector<Color> picture(std::size_t{kWidth} * kHeight);
    EXPECT_EQ(samples.size(), picture.size() * 4);
    for (std::size_t i = 0; i < picture.size() && i * 4 + 3 < samples.size(); ++i) {
        const std::size_t x = i % kWidth;
        const std::size_t y = kHeight - 1 - i / kWidth;
        picture[y * kWidth + x] = {samples[i * 4 + 1], samples[i * 4 + 2], samples[i * 4 + 3], samples[i * 4]};
    }
    return picture;
}

std::vector<Color> ImportTest::render(const std::string& effect, const std::string& arguments) {
    const ToolRun result = run("render " + effect + " -i in.argb -o out.argb --size 8x6 --depth 32 " + arguments);
    EXPECT_EQ(result.status, 0) << result.err;
    return read("out.argb");
}

std::vector<std::vector<Color>> ImportTest::renderFrames(const std::string& effect, int count,
                                                         const std::string& arguments) {
    const ToolRun result = run("render " + effect + " -i in.argb -o out.##.argb --size 8x6 --depth 32 --frames 0-" +
                               std::to_string(count - 1) + " " + arguments);
    EXPECT_EQ(result.status, 0) << result.err;
    std::vector<std::vector<Color>> frames;
    for (int i = 0; i < count; ++i) frames.push_back(read("out.0" + std::to_string(i) + ".argb"));
    return frames;
}

void ImportTest::ExpectPicture(const std::vector<Color>& picture, const Formula& expected, float tolerance) {
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const Color& found = picture[std::size_t{kWidth} * y + x];
            const Color wanted = expected(x, y);
            for (std::size_t i = 0; i < 4; ++i)
                ASSERT_NEAR(found[i], wanted[i], tolerance) << "x " << x << ", y " << y << ", channel " << i;
        }
    }
}

}  // namespace quillon::test
