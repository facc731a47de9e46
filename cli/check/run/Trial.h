#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "cli/check/watch/ScriptWatch.h"
#include "cli/effect/LoadedEffect.h"

namespace quillon::cli {

// Where a trial reports to, as it goes.
class TrialReports {
public:
    virtual ~TrialReports() = default;
    // What is tried next. It is taken for hanging when nothing is reported for a while.
    virtual void step(const std::string& words) = 0;
    // See ScriptWatch::PassListener.
    virtual void pass(const Diagnostics& unlessItEnds) = 0;
    virtual void findings(const Diagnostics& found, const std::string& situation) = 0;
    // Of this frame's pixels. Frames of one number that differ between two scenes depend on what was rendered before.
    virtual void frame(std::int32_t number, std::uint64_t digest) = 0;
};

// One effect in one host, which a scene runs.
class Trial {
public:
    // Level 1 to 5: how much is asked for.
    Trial(EffectSource effectSource, int askedLevel, TrialReports& trialReports);

    // The effect on trial, and how hard it is looked at.
    const EffectSource& source() const { return effectSource; }
    int level() const { return askedLevel; }

    // `situation` says what was special where these came up, in a few words; empty for nothing.
    void report(const Diagnostics& found, const std::string& situation = {});
    // A finding by a rule, of no line: that of the whole effect.
    void report(const char* rule, const std::string& text, const std::string& situation = {});
    void reportFrame(std::int32_t number, const host::World& frame);

    // Does the work, and reports what it and the script come up with. False when that had an error. Throws on what is
    // no fault of the effect.
    bool attempt(const std::string& step, const std::string& situation, const std::function<void()>& work);

    // The effect started in such a host. False when it could not be.
    bool load(const host::HostSettings& settings);
    // While it is loaded.
    LoadedEffect& effect() { return *loaded; }
    // A frame whose values are numbers; null after an error. NaN and infinities of the frame are reported, unless the
    // input has them.
    std::shared_ptr<host::World> render(const FrameInput& input, const std::string& situation, bool isDamaged = false);

private:
    EffectSource effectSource;
    int askedLevel;
    TrialReports& reports;
    ScriptWatch watch;
    std::optional<LoadedEffect> loaded;
};

// One way to try an effect, in a separate process, since a process has one engine.
struct Scene {
    const char* name;  // in words: what is checked
    int level;         // from which on it is played
    void (*play)(Trial&);
};

// In the order in which they are played. A scene with errors is the last.
std::span<const Scene> Scenes();

// The scenes. Each reports through the trial, and ends where an error has come up.
void PlayStart(Trial& trial);
void PlayControls(Trial& trial);
void PlaySizesAndLayers(Trial& trial);
void PlayClassicRoute(Trial& trial);
void PlayPremiere(Trial& trial);
void PlayDownsampled(Trial& trial);
void PlayTwoInstances(Trial& trial);
void PlayFramesInOrder(Trial& trial);
void PlayFrameByItself(Trial& trial);
void PlayLongRun(Trial& trial);
void PlayDamagedInput(Trial& trial);

}  // namespace quillon::cli
