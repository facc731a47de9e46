#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "cli/check/watch/ScriptWatch.h"
#include "cli/effect/LoadedEffect.h"
#include "cli/effect/ShownTarget.h"
#include "cli/preview/FramePictures.h"
#include "cli/preview/PreviewMessages.h"
#include "cli/preview/ScriptClock.h"
#include "host/World.h"

namespace quillon::cli {

// A frame of an effect: what the answer to its request says, and its pixels.
struct PreviewFrame {
    nlohmann::json text;
    std::shared_ptr<const host::World> pixels;
};

// An effect that is looked at while it is written: the worker's side of PreviewMessages.h. One a process, as
// LoadedEffect is. What goes wrong is thrown as ToolError.
class EffectPreview {
public:
    // The source has passed CheckSource and outlives this. It runs by the tool's own engine, a module's files too: a
    // module is silent.
    EffectPreview(const PreviewSetup& previewSetup, const EffectSource& effectSource);

    // The answer to the setup.
    nlohmann::json describe();
    // The picture file of a layer; nothing for "None".
    void setLayer(const std::string& name, std::span<const std::byte> file);
    // What a request for a frame asks for. After a fault the next one may go well.
    PreviewFrame render(const nlohmann::json& request);

private:
    void openInput();
    void addLayers();
    void applyValues(const nlohmann::json& wanted);
    FrameInput inputOf(std::int32_t frame, std::uint32_t depth, double rate);
    nlohmann::json states() const;
    void checkTexts();
    const nlohmann::json& warningsNow();
    const std::vector<ListedTarget>& targetsNow();

    const EffectSource& source;
    PreviewSetup setup;
    std::unique_ptr<FramePictures> input;
    double framesPerSecond = 25;  // that the input has
    ScriptWatch watch;
    ScriptClock clock;
    std::optional<LoadedEffect> effect;
    std::map<const Control*, FramePictures> layers;
    std::map<const Control*, std::string> values;  // texts, as they are set
    Diagnostics warnings;
    nlohmann::json shownWarnings;  // of these
    std::vector<ListedTarget> targets;
    std::chrono::steady_clock::time_point targetsNamed;
};

}  // namespace quillon::cli
