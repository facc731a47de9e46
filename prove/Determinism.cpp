// Planted once: a time that a process shifts by its number.

#include <map>

#include "Ground.h"
#include "Tool.h"
#include "support/BuiltFiles.h"

namespace quillon::prove {

std::string Determinism(bool isLong) {
    const Tool tool;
    tool.runWell("chart -o in.exr --size 96x54");
    std::map<std::string, std::string> first;
    int runs = 0;
    for (const char* effect : {"glow", "grain", "displace"})
        for (int turn = 0; turn < (isLong ? 5 : 1); ++turn)
            for (const char* threads : {"0", "1", "2", "4"}) {
                const std::string folder = (test::SourceFolder() / "effects" / effect).string();
                for (const char* depth : {"8", "16", "32"}) {
                    const std::string what = std::string(effect) + " at " + depth + " bits";
                    NowAt(what);
                    tool.runWell("render '" + folder + "' -i in.exr --frames 3-3 -o %d.argb --depth " + depth,
                                 std::string("LP_NUM_THREADS=") + threads);
                    const std::string frame = tool.read("3.argb");
                    Require(!frame.empty(), "no frame");
                    const auto [place, isNew] = first.try_emplace(what, frame);
                    Require(isNew || place->second == frame, what + " differs with " + threads + " threads");
                    ++runs;
                }
            }
    return std::to_string(runs) + " runs, " + std::to_string(first.size()) + " pictures";
}

}  // namespace quillon::prove
