#pragma once

#include <cstddef>
#include <map>
#include <vector>

#include "cli/check/watch/CallCheck.h"
#include "cli/effect/EffectSource.h"

namespace quillon::cli {

// What comes of making and releasing things: pictures that cannot be read, targets without storage, releases of what is
// still in use, and what piles up from frame to frame.
class MakingChecks : public CallCheck {
public:
    MakingChecks(WatchedRun& watchedRun, const EffectSource& effect) : CallCheck(watchedRun), source(effect) {}
    void before(const NativeCall& call) override;
    void after(const NativeCall& call) override;
    void entryEnds(bool hasFailed) override;
    void finish() override;

private:
    void checkPicture(const NativeCall& call) const;
    void checkTarget(const NativeCall& call) const;
    void checkRelease(const NativeCall& call) const;

    const EffectSource& source;
    std::map<int, std::vector<std::size_t>> livingAfterFrames;  // by the line that makes: how many, after each frame
};

}  // namespace quillon::cli
