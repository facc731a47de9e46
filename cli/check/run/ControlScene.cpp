#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <random>
#include <vector>

#include "cli/check/run/ControlEnds.h"
#include "cli/check/run/FrameLooks.h"
#include "cli/check/run/TestFrames.h"
#include "cli/diagnostics/Rules.h"

// Level 4: each control at its ends, and whether it changes anything.

namespace quillon::cli {

namespace {

// Two frames in a row, for what takes effect from one frame to the next.
constexpr std::int32_t kFirstFrame = 9;
constexpr std::int32_t kLastFrame = 10;

using Digests = std::optional<std::vector<std::uint64_t>>;  // nothing after an error

void Set(LoadedEffect& effect, const Control& control, const ControlValue& value) {
    effect.set(control, [value](double) { return value; });
}

// Values of all controls: the number of one of its ends, or its default.
using Setting = std::vector<std::size_t>;
constexpr std::size_t kDefault = SIZE_MAX;

constexpr std::size_t kUniformSettings = 6;  // all controls at their first ends, all at their second, and so on
constexpr std::size_t kMostSwitches = 32;    // settings with one popup or check box elsewhere
constexpr std::size_t kMixedSettings = 8;

bool IsSwitch(const Control& control) {
    return ControlKindOf(control.declared.kind).scriptForm == ScriptForm::integer;
}

// Those in which a control that does nothing at the defaults is tried again: it may do something there.
std::vector<Setting> OtherSettings(const std::vector<Control>& controls) {
    std::vector<Setting> settings;
    for (std::size_t end = 0; end < kUniformSettings; ++end) settings.emplace_back(controls.size(), end);
    for (std::size_t i = 0; i < controls.size(); ++i) {
        const std::size_t count = IsSwitch(controls[i]) ? EndsOf(controls[i]).size() : 0;
        for (std::size_t end = 0; end < count && settings.size() < kUniformSettings + kMostSwitches; ++end) {
            settings.emplace_back(controls.size(), kDefault);
            settings.back()[i] = end;
        }
    }
    std::minstd_rand random;  // from its fixed seed
    for (std::size_t i = 0; i < kMixedSettings; ++i) {
        settings.emplace_back();
        for (std::size_t control = 0; control < controls.size(); ++control) settings.back().push_back(random() % 7);
    }
    return settings;
}

class ControlTrial {
public:
    explicit ControlTrial(Trial& loadedTrial) : trial(loadedTrial), effect(trial.effect()) {
        for (std::int32_t frame = kFirstFrame; frame <= kLastFrame; ++frame) {
            inputs.push_back(TestFrame(32, frame));
            GiveLayers(effect, inputs.back());
        }
    }

    void run() {
        constexpr const char* kAtDefaults = "with its controls at their defaults";
        defaults = render(kAtDefaults);
        const auto frame = trial.render(inputs.back(), kAtDefaults);
        if (!defaults || !frame) return;
        std::vector<const Control*> idle;
        bool isAllIdle = true;
        for (const Control& control : effect.controls()) {
            const std::vector<ControlValue> ends = EndsOf(control);
            if (ends.empty()) continue;
            const std::optional<bool> isIdle = isIdleAt(control, ends, {});
            if (!isIdle) return;
            if (*isIdle) idle.push_back(&control);
            isAllIdle = isAllIdle && *isIdle;
        }
        if (isAllIdle && AreNearlyEqual(*frame, *inputs.back().picture))
            return trial.report("render/equal-input", "the frame is equal to its input, whatever its controls are");
        for (const Control* control : idle) {
            const std::optional<bool> isIdle = isIdleEverywhere(*control);
            if (!isIdle) return;
            if (*isIdle) reportIdle(*control);
        }
    }

private:
    Digests render(const std::string& situation) {
        std::vector<std::uint64_t> digests;
        for (const FrameInput& input : inputs) {
            const auto frame = trial.render(input, situation);
            if (!frame) return {};
            digests.push_back(DigestOf(*frame));
        }
        return digests;
    }

    // Whether all of the values give one picture, with the others elsewhere as `where` says, or at their defaults.
    // Nothing after an error.
    std::optional<bool> isIdleAt(const Control& control, const std::vector<ControlValue>& ends,
                                 const std::optional<std::string>& where) {
        std::vector<Digests> pictures;
        if (!where) pictures.push_back(defaults);
        for (const ControlValue& value : ends) {
            Set(effect, control, value);
            const std::string others = where && !where->empty() ? ", " + *where : "";
            pictures.push_back(render(fmt::format("with {}{}", WordsOfValue(control, value), others)));
            if (!pictures.back()) return {};
        }
        effect.reset(control);
        return std::ranges::all_of(pictures, [&](const Digests& each) { return each == pictures.front(); });
    }

    std::optional<bool> isIdleEverywhere(const Control& control) {
        const std::vector<ControlValue> ends = EndsOf(control);
        for (const Setting& setting : OtherSettings(effect.controls())) {
            const std::optional<bool> isIdle = isIdleAt(control, ends, apply(setting, control));
            resetAll();
            if (!isIdle || !*isIdle) return isIdle;
        }
        return true;
    }

    // All but one control; what the frame is then, in words.
    std::string apply(const Setting& setting, const Control& control) {
        constexpr std::size_t kMostWords = 4;
        std::string words;
        std::size_t count = 0;
        for (std::size_t i = 0; i < setting.size(); ++i) {
            const Control& other = effect.controls()[i];
            const std::vector<ControlValue> ends = EndsOf(other);
            if (&other == &control || ends.empty() || setting[i] == kDefault) continue;
            const ControlValue& value = ends[std::min(setting[i], ends.size() - 1)];
            Set(effect, other, value);
            if (++count <= kMostWords) words += (words.empty() ? "" : ", ") + WordsOfValue(other, value);
        }
        return count > kMostWords ? words + " and others" : words;
    }

    void resetAll() {
        for (const Control& control : effect.controls())
            if (!EndsOf(control).empty()) effect.reset(control);
    }

    void reportIdle(const Control& control) {
        trial.report("render/control-without-effect",
                     fmt::format("'{}' changes nothing at its ends", control.declared.uniformName));
    }

    Trial& trial;
    LoadedEffect& effect;
    std::vector<FrameInput> inputs;
    Digests defaults;
};

}  // namespace

void PlayControls(Trial& trial) {
    if (trial.load(TestHost())) ControlTrial(trial).run();
}

}  // namespace quillon::cli
