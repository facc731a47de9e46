#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string>

#include "cli/check/watch/ScriptWatch.h"
#include "cli/effect/LoadedEffect.h"
#include "cli/preview/FramePictures.h"
#include "cli/preview/PreviewMessages.h"
#include "cli/preview/ScriptClock.h"
#include "cli/worker/WorkerMessage.h"

namespace quillon::cli {

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
    // The answer to a request for a frame. After a fault the next one may go well.
    WorkerMessage render(const nlohmann::json& request);

private:
    void openInput();
    void addLayers();
    void applyValues(const nlohmann::json& wanted);
    FrameInput inputOf(std::int32_t frame, std::uint32_t depth, double rate);
    nlohmann::json states() const;
    void checkTexts();
    const nlohmann::json& warningsNow();

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
};

}  // namespace quillon::cli
