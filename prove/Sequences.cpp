// Planted once: a frame that is written in place, so that --resume takes a part of it for the whole.

#include <random>

#include "Ground.h"
#include "Tool.h"

namespace quillon::prove {

std::string Sequences(bool isLong) {
    const int frames = isLong ? 1000 : 150, kills = isLong ? 10 : 3;
    const Tool tool;
    tool.addEffectAndInput();
    tool.runWell("chart -o in.png --size 256x144");
    for (const char* folder : {"whole", "killed"}) std::filesystem::create_directory(tool.pathOf(folder));
    const auto render = [&](const std::string& folder, const std::string& options) {
        return "render fx -i in.png -o " + folder + "/%d.tif --depth 32 --key v@0=0 --key v@" + std::to_string(frames) +
               "=1 --frames 0-" + std::to_string(frames - 1) + " " + options;
    };
    tool.runWell(render("whole", ""));

    std::mt19937 random(Seed());
    int found = 0;
    for (int kill = 1; kill <= kills; ++kill) {
        const std::string now = "kill " + std::to_string(kill);
        NowAt(now);
        // Frames come in order, or in two pieces of the sequence.
        const bool hasTwo = kill % 2 == 0;
        const int rest = frames / (hasTwo ? 2 : 1);
        const int after = rest * kill / (kills + 1) - static_cast<int>(random() % 5);
        tool.run(render("killed", hasTwo ? "--resume -j 2" : "--resume") + " & tool=$!; while [ ! -e killed/" +
                     std::to_string(after) + ".tif ] && kill -0 $tool 2>/dev/null; do sleep 0.00" +
                     std::to_string(random() % 10) + "; done; kill -KILL $tool; wait $tool )",
                 "(");
        int there = 0;
        for (int frame = 0; frame < frames; ++frame)
            there += std::filesystem::exists(tool.pathOf("killed/" + std::to_string(frame) + ".tif")) ? 1 : 0;
        Require(there < frames, now + ": the sequence was whole before it was killed");
        found += there;
    }
    tool.runWell(render("killed", "--resume"));
    for (int frame = 0; frame < frames; ++frame) {
        const std::string name = "/" + std::to_string(frame) + ".tif", whole = tool.read("whole" + name);
        Require(!whole.empty() && tool.read("killed" + name) == whole,
                "frame " + std::to_string(frame) + " is another one than without kills");
        Require(frame == 0 || tool.read("whole/0.tif") != whole, "all frames are the same");
    }
    const auto count = [&](const char* folder) {
        return std::distance(std::filesystem::directory_iterator(tool.pathOf(folder)), {});
    };
    Require(count("killed") == count("whole"), "files are left beside the frames");
    return std::to_string(frames) + " frames, killed " + std::to_string(kills) + " times with " +
           std::to_string(found / kills) + " of them there";
}

}  // namespace quillon::prove
