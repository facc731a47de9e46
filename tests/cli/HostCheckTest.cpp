// The effect that reports on its host: no red line where all is right, on every route and depth, and red ones where
// something is wrong.

#include "ToolTest.h"

namespace quillon::test {

namespace {

class HostCheck : public ToolTest {
protected:
    HostCheck() {
        addCopyEffect();
        run("chart -o in.png --size 640x360");
    }

    void paintChart(int depth) {
        bits = " --depth " + std::to_string(depth);
        const ToolRun painted = run("render \"" + effect + "\" -i in.png -o chart.argb" + bits);
        EXPECT_EQ(painted.status, 0) << painted.err;
    }

    // Pixels of the sheet's red in a frame with these arguments of render.
    std::size_t red(const std::string& arguments) {
        const ToolRun checked =
            run("render \"" + effect + "\" -i chart.argb --size 640x360 -o sheet.tif --set mode=Check" + bits + " " +
                arguments);
        EXPECT_EQ(checked.status, 0) << checked.err;
        run("render copy -i sheet.tif --depth 8 -o sheet.argb");
        const auto samples = readSamples<std::uint8_t>("sheet.argb");
        EXPECT_GE(samples.size(), std::size_t{4} * 300 * 170);
        std::size_t count = 0;
        for (std::size_t i = 0; i < samples.size(); i += 4)
            if (samples[i + 1] > 180 && samples[i + 1] < 200 && samples[i + 2] < 20) ++count;
        return count;
    }

private:
    std::string effect = (SourceFolder() / "effects/hostcheck").string();
    std::string bits;
};

TEST_F(HostCheck, IsGreenWhereAllIsRightAndRedWhereItIsNot) {
    const char* const allControls =
        "--set position=Moved --set slider=75.5 --set angle=400 --set box=0 --set menu=Three --set color=#0000ff "
        "--set point=0,0";
    for (const int depth : {16, 32, 8}) {
        paintChart(depth);
        for (const char* way : {"--route smart", "--route classic", "--host premiere", "--downsample 2", "--time 1.2",
                                "--set grows=true", allControls})
            EXPECT_EQ(red(std::string(way) + " --layer layer=chart.argb"), 0u) << depth << " bits, " << way;
    }
    for (const char* wrong : {"--set slider=51", "--set angle=390", "--set box=0", "--set menu=One",
                              "--set color=#ff0000", "--set point=0,0", "--time 0.03", "--layer layer=in.png"})
        EXPECT_GT(red(wrong), 500u) << wrong;
}

}  // namespace

}  // namespace quillon::test
