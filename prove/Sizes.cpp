// Planted once: an upload that reads four bytes past the last row.

#include <algorithm>

#include "Effects.h"
#include "Ground.h"
#include "GuardedWorlds.h"
#include "support/EngineTest.h"

namespace quillon::prove {

namespace {

constexpr A_long kExtents[] = {1, 2, 3, 5, 7, 63, 64, 65, 127, 255, 1921};
constexpr RowLayout kLayouts[] = {
    {"tight", 0, false}, {"1 pixel more", 1, false}, {"4 more", 4, false}, {"upward", 1, true}};

struct Play {
    const char* name;
    host::HostKind kind;
    host::Route route;
    const char* extent;  // the script's wish where the route asks for less than its input has
    A_long layerMore;    // Premiere Pro draws one row and one column less than its layer has
};
constexpr Play kPlays[] = {
    {"smart", host::HostKind::afterEffects, host::Route::smart, "", 0},
    {"classic", host::HostKind::afterEffects, host::Route::classic,
     "function preRender(w, h) { QL_setOutputExtent(w + 2, h + 1); }", 0},
    {"Premiere", host::HostKind::premiere, host::Route::classic, "", 1},
};

// The plain rule for a copy: what comes in goes out. The range of 16 bits has one value too many for GL's: 16385 is
// lost.
test::Bytes Copied(const test::Bytes& input, int depth) {
    if (depth != 16) return input;
    std::vector<std::uint16_t> words = test::ChannelsOf<std::uint16_t>(input);
    std::ranges::replace(words, std::uint16_t{16385}, std::uint16_t{16384});
    return test::BytesOf(words);
}

}  // namespace

std::string Sizes(bool isLong) {
    int frames = 0;
    for (const Play& play : kPlays) {
        const LoadedEffect loaded({{"fx.js", test::CopyScript(true) + play.extent},
                                   {"config.xml", test::kConfig},
                                   {"copy.frag", test::kCopyFragment}});
        host::HostSession session(loaded.effect(), Unrecorded(play.route, play.kind));
        session.start();
        host::HostInstance& instance = session.apply();
        for (const RowLayout& layout : kLayouts) {
            session.hooks().makeWorld = [&](A_long width, A_long height, int depth) {
                return GuardedWorld(width, height, depth, layout);
            };
            for (const int depth : {8, 16, 32})
                for (const A_long width : kExtents)
                    for (const A_long height : kExtents) {
                        if (!isLong && width * height > 1'000'000 && &play != kPlays) continue;
                        const std::string what = std::to_string(width) + "x" + std::to_string(height) + " at " +
                                                 std::to_string(depth) + " bits, " + layout.name + ", " + play.name;
                        NowAt(what);
                        const test::Bytes input = Noise(width, height, depth, static_cast<std::uint32_t>(++frames));
                        host::FrameRequest request{session.newWorld(width, height, depth)};
                        request.input->write(input);
                        request.layerWidth = width + play.layerMore;
                        request.layerHeight = height + play.layerMore;
                        Require(RenderedBytes(instance, request, play.route) == Copied(input, depth),
                                "not as the plain rule: " + what);
                    }
        }
    }
    return std::to_string(frames) + " frames";
}

}  // namespace quillon::prove
