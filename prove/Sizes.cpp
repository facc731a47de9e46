// Planted once: an upload that reads four bytes past the last row; a longest side of half the driver's (huge).

#include <algorithm>
#include <cstring>
#include <ctime>

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

// What the driver takes as a texture, and what a frame may have: larger ones come out as they were, as docs/limits.md
// says, and soon.
std::string Huge() {
    constexpr A_long kMostSide = 16384;  // of Mesa's software renderer
    constexpr std::int64_t kTooManyBytes = std::int64_t{512} << 20;
    constexpr std::pair<A_long, A_long> kHuge[] = {{16384, 1},   {1, 16384},   {16385, 1},  {1, 16385},
                                                   {8192, 4095}, {8192, 4096}, {8192, 8192}};
    const LoadedEffect loaded({{"fx.js", test::CopyScript(true)},
                               {"config.xml", test::kConfig},
                               {"copy.frag",
                                "uniform sampler2D sInput0;\nvoid main() { gl_FragColor = vec4(1.0) - "
                                "texture2D(sInput0, gl_TexCoord[0].st); }\n"}});
    host::HostSession session(loaded.effect(), Unrecorded());
    session.start();
    host::HostInstance& instance = session.apply();
    double slowestRefusal = 0;
    for (const int depth : {8, 32})
        for (const auto& [width, height] : kHuge) {
            const std::string what =
                std::to_string(width) + "x" + std::to_string(height) + " at " + std::to_string(depth) + " bits";
            NowAt(what);
            const host::FrameRequest request{session.newWorld(width, height, depth)};
            test::Bytes wanted = Noise(width, height, depth, 1);
            request.input->write(wanted);
            const bool isRefused =
                std::max(width, height) > kMostSide || std::int64_t{width} * height * depth / 2 >= kTooManyBytes;
            if (!isRefused && depth == 8)
                for (std::byte& channel : wanted) channel = ~channel;
            if (!isRefused && depth == 32)
                for (std::size_t i = 0; i < wanted.size(); i += sizeof(float)) {
                    float channel;
                    std::memcpy(&channel, &wanted[i], sizeof channel);
                    channel = 1.0f - channel;
                    std::memcpy(&wanted[i], &channel, sizeof channel);
                }
            const std::clock_t start = std::clock();
            const test::Bytes made = RenderedBytes(instance, request, host::Route::smart);
            const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
            Require(made == wanted, "not as the plain rule: " + what);
            if (std::max(width, height) > kMostSide) slowestRefusal = std::max(slowestRefusal, seconds);
        }
    Require(slowestRefusal < 2, "a refusal takes " + std::to_string(slowestRefusal) + " s");
    return ", " + std::to_string(2 * std::size(kHuge)) + " huge ones, refused in " + std::to_string(slowestRefusal) +
           " s CPU";
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
    return std::to_string(frames) + " frames" + (isLong ? Huge() : "");
}

}  // namespace quillon::prove
