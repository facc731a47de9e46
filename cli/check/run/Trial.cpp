#include "cli/check/run/Trial.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "cli/check/run/FrameLooks.h"
#include "cli/check/run/TestFrames.h"
#include "cli/diagnostics/Rules.h"

namespace quillon::cli {

namespace {

constexpr Scene kScenes[] = {
    {"its files and its first frames", 1, PlayStart},
    {"each control at its ends", 4, PlayControls},
    {"other sizes and layers", 4, PlaySizesAndLayers},
    {"the classic route", 4, PlayClassicRoute},
    {"Premiere Pro", 4, PlayPremiere},
    {"a preview of a third of the size", 4, PlayDownsampled},
    {"two instances in turn", 4, PlayTwoInstances},
    {"frames in order and again", 5, PlayFramesInOrder},
    {"a frame by itself", 5, PlayFrameByItself},
    {"a long run of frames", 5, PlayLongRun},
    {"an input with NaN and infinities", 5, PlayDamagedInput},
};

bool HasError(const Diagnostics& found) {
    return std::ranges::any_of(found,
                               [](const Diagnostic& each) { return each.severity == Diagnostic::Severity::error; });
}

}  // namespace

std::span<const Scene> Scenes() {
    return kScenes;
}

Trial::Trial(EffectSource source, int level, TrialReports& trialReports)
    : effectSource(std::move(source)),
      askedLevel(level),
      reports(trialReports),
      watch(effectSource, [this](const Diagnostics& unlessItEnds) { reports.pass(unlessItEnds); }) {}

void Trial::report(const Diagnostics& found, const std::string& situation) {
    if (!found.empty()) reports.findings(found, situation);
}

void Trial::report(const char* rule, const std::string& text, const std::string& situation) {
    report({Found(rule, effectSource.path.generic_string(), 0, 0, text)}, situation);
}

void Trial::reportFrame(std::int32_t number, const host::World& frame) {
    reports.frame(number, DigestOf(frame));
}

bool Trial::attempt(const std::string& step, const std::string& situation, const std::function<void()>& work) {
    reports.step(step);
    Diagnostics found;
    try {
        work();
    } catch (const ToolError& error) {
        const bool isOfSystem = std::ranges::any_of(
            error.faults, [](const Diagnostic& fault) { return fault.kind == Diagnostic::Kind::tool; });
        if (isOfSystem) throw;
        found = error.faults;
    }
    const Diagnostics watched = watch.take();
    found.insert(found.end(), watched.begin(), watched.end());
    report(found, situation);
    return !HasError(found);
}

bool Trial::load(const host::HostSettings& settings) {
    return attempt("setup()", "", [&] { loaded.emplace(effectSource, settings); });
}

std::shared_ptr<host::World> Trial::render(const FrameInput& input, const std::string& situation, bool isDamaged) {
    std::shared_ptr<host::World> frame;
    const bool isDrawn = attempt(situation.empty() ? "a frame" : "the frame " + situation, situation,
                                 [&] { frame = loaded->render(input); });
    if (!isDrawn) return nullptr;
    if (isDamaged || frame->bitDepth() != 32) return frame;
    if (const std::string words = WordsOfBadNumbers(*frame); !words.empty()) {
        report("render/not-a-number", words, situation);
        return nullptr;
    }
    return frame;
}

}  // namespace quillon::cli
