#include <memory>

#include "cli/check/run/FrameLooks.h"
#include "cli/check/run/TestFrames.h"
#include "cli/check/script/CheckScript.h"
#include "cli/effect/ConfigChecks.h"
#include "cli/effect/EffectDescription.h"
#include "cli/effect/Leftovers.h"
#include "cli/effect/ShaderFaults.h"

// Levels 1 to 3: the files, the texts, setup(), all shaders, and a frame at each depth.

namespace quillon::cli {

namespace {

bool CheckFiles(Trial& trial) {
    const EffectSource& source = trial.source();
    return trial.attempt("its files", "", [&] {
        ThrowIfAny(CheckSource(source));
        trial.report(CheckIdentity(source));
        trial.report(CheckLeftovers(source));
        DescribeEffect(source);
        trial.report(CheckSampleName(source));
    });
}

bool CheckTexts(Trial& trial) {
    const EffectSource& source = trial.source();
    trial.report(CheckScriptText(source.pathOf("fx.js"), source.textOf("fx.js")));
    const bool isLoaded = trial.load(TestHost());
    // Also of a script that has failed, and of the shaders that it does not load.
    return trial.attempt("its shaders", "", [&] { trial.report(CompileShaderFiles(source)); }) && isLoaded;
}

// The depth says something only of what the first one has not shown.
std::string SituationOf(std::uint32_t bitDepth) {
    return bitDepth == kDepths[0] ? "" : WordsOfDepth(bitDepth);
}

std::shared_ptr<host::World> RenderAt(Trial& trial, std::uint32_t bitDepth) {
    FrameInput input = TestFrame(bitDepth);
    GiveLayers(trial.effect(), input);
    return trial.render(input, SituationOf(bitDepth));
}

void CheckFrames(Trial& trial) {
    std::shared_ptr<host::World> frames[std::size(kDepths)];
    for (std::size_t i = 0; i < std::size(kDepths); ++i) {
        frames[i] = RenderAt(trial, kDepths[i]);
        if (!frames[i]) return;
        const std::string oneColor = WordsOfOneColor(*frames[i]);
        if (!oneColor.empty()) trial.report("render/one-color", oneColor, SituationOf(kDepths[i]));
    }
    if (const std::string words = WordsOfBadAlpha(*frames[2]); !words.empty())
        trial.report("render/outside-range", words, WordsOfDepth(32));
    // Of an effect that goes on from frame to frame the frames differ anyway.
    const auto again = RenderAt(trial, kDepths[0]);
    if (!again || DigestOf(*again) != DigestOf(*frames[0])) return;
    for (const std::size_t i : {0, 1}) {
        const std::string words = WordsOfDifference(*frames[i], *frames[2]);
        if (!words.empty()) return trial.report("render/depths-differ", words);
    }
}

}  // namespace

void PlayStart(Trial& trial) {
    if (!CheckFiles(trial) || trial.level() < 2) return;
    if (!CheckTexts(trial) || trial.level() < 3) return;
    CheckFrames(trial);
}

}  // namespace quillon::cli
