// Planted once: textures whose GL objects stay (instances), a script heap that is not ended (restarts).

#include <random>

#include "Effects.h"
#include "Ground.h"
#include "LiveGL.h"

namespace quillon::prove {

namespace {

constexpr A_long kSide = 8;

// Instances made and ended in random order, `most` at once, until `count` were made; then all are removed. How many of
// them have rendered.
int ComeAndGo(host::HostSession& session, std::mt19937& random, int count, std::size_t most) {
    std::vector<host::HostInstance*> living;
    std::vector<bool> hasRendered;
    std::shared_ptr<host::World> input = WorldOf(session, kSide, kSide, 8, 3);
    int rendered = 0;
    const auto add = [&](host::HostInstance& instance) {
        living.push_back(&instance);
        hasRendered.push_back(false);
        --count;
    };
    bool wasFull = false;
    while (count > 0 || !living.empty()) {
        const std::size_t i = living.empty() ? 0 : random() % living.size();
        wasFull = wasFull || living.size() == most;
        // First many, then any, then none.
        const unsigned step = living.empty() || (count > 0 && !wasFull) ? random() % 4
                              : count > 0                               ? random() % 8
                                                                        : 4 + random() % 4;
        if (step < 2 && count > 0 && living.size() < most) {
            add(step == 0 || living.empty() ? session.apply() : session.duplicate(*living[i]));
        } else if (step == 2 && count > 0 && living.size() < most && !living.empty()) {
            add(session.load(session.save(*living[i])));
        } else if (step == 3 && !living.empty()) {
            RenderedBytes(*living[i], {input}, random() % 2 ? host::Route::classic : host::Route::smart);
            rendered += hasRendered[i] ? 0 : 1;
            hasRendered[i] = true;
        } else if (step > 3) {
            session.remove(*living[i]);
            living.erase(living.begin() + static_cast<std::ptrdiff_t>(i));
            hasRendered.erase(hasRendered.begin() + static_cast<std::ptrdiff_t>(i));
        }
    }
    Require(wasFull, "never as many instances at once as meant");
    return rendered;
}

}  // namespace

// What the contract keeps until the script starts anew: output target and input texture of each instance that has
// rendered. They are counted here, and end with the start of the next round.
std::string Instances(bool isLong) {
    const int perRound = isLong ? 2500 : 300;
    const LoadedEffect loaded(ThreePasses());
    host::HostSession session(loaded.effect(), Unrecorded());
    std::mt19937 random(18);
    int rendered = 0;
    std::size_t warm = 0;
    LiveGL atStart;
    constexpr int kRounds = 5, kWarmUp = 2;
    for (int round = 0; round <= kRounds; ++round) {
        session.start();
        if (round == 0) atStart = CountLiveGL();
        Require(CountLiveGL() == atStart, "a start leaves GL objects of the script before");
        if (round == kWarmUp) warm = ResidentBytes();
        if (round == kRounds) break;
        rendered = ComeAndGo(session, random, perRound, 256);
        const LiveGL atEnd = CountLiveGL();
        // Two targets of the effect's own for each size, and what the contract keeps.
        Require(atEnd.textures - atStart.textures <= 2 * rendered + 4, "textures are left beside the instances' own");
        Require(atEnd.framebuffers - atStart.framebuffers <= rendered + 4, "framebuffers are left");
        Require(session.handles().aliveCount() == 1, "handles are left beside the global data");
    }
    Require(CountLiveGL().contexts == 1, "there is more than one GL context");
    return std::to_string(kRounds * perRound) + " instances, 256 at once, two textures kept for each rendered, " +
           RequireLevel(warm, "over the last " + std::to_string((kRounds - kWarmUp) * perRound));
}

std::string Restarts(bool isLong) {
    const int restarts = isLong ? 2000 : 200;
    constexpr int kWarmUp = 20;
    const LoadedEffect loaded(ThreePasses());
    host::HostSession session(loaded.effect(), Unrecorded());
    LiveGL first;
    std::size_t warm = 0;
    test::Bytes picture;
    for (int restart = 0; restart < restarts; ++restart) {
        session.start();
        host::HostInstance& instance = session.apply();
        const test::Bytes pixels = RenderedBytes(instance, {WorldOf(session, 9, 7, 8, 1)}, host::Route::smart);
        session.remove(instance);
        if (restart == 0) {
            first = CountLiveGL();
            picture = pixels;
        }
        if (restart == kWarmUp) warm = ResidentBytes();
        Require(CountLiveGL() == first, "restart " + std::to_string(restart) + " leaves GL objects");
        Require(pixels == picture, "restart " + std::to_string(restart) + " gives another picture");
    }
    return std::to_string(restarts) + " restarts, " + RequireLevel(warm, "after restart " + std::to_string(kWarmUp));
}

}  // namespace quillon::prove
