#pragma once

#include <fmt/format.h>

#include <string>

#include "cli/import/EffectPlan.h"

namespace quillon::cli {

// A part of a script as it is written, and what the parts ask of the plan.
class ScriptPart {
public:
    explicit ScriptPart(const EffectPlan& effectPlan);

protected:
    template <class... Values>
    void line(fmt::string_view form, const Values&... values) {
        text += fmt::vformat(form, fmt::make_format_args(values...)) + "\n";
    }

    bool has(PlannedControl::Kind kind) const;
    bool has(PlannedImage::Source source) const;
    // Whether a shader reads the image or target of this name.
    bool isRead(const std::string& picture) const;
    // Whether pictures are copied, to turn them over.
    bool hasCopies() const;

    const EffectPlan& plan;
    std::string text;
    bool isPersistent = false;
    bool countsFrames = false;
    bool needsRate = false;  // the script counts frames by time
};

// The head of the script: variables, the declaration of controls, shaders and targets.
std::string WriteScriptSetup(const EffectPlan& plan);

// The rest: how a frame is drawn.
std::string WriteScriptDrawing(const EffectPlan& plan);

}  // namespace quillon::cli
