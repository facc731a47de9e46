#include "cli/import/ScriptPart.h"

#include <algorithm>

#include "cli/import/BuiltIns.h"

namespace quillon::cli {

ScriptPart::ScriptPart(const EffectPlan& effectPlan) : plan(effectPlan), isPersistent(plan.isPersistent()) {
    for (const BuiltIn& builtIn : BuiltIns(plan.format))
        countsFrames = countsFrames || (builtIn.needsFrames && plan.uses(builtIn.name));
    needsRate = countsFrames && !isPersistent;
}

bool ScriptPart::has(PlannedControl::Kind kind) const {
    return std::ranges::any_of(plan.controls, [kind](const PlannedControl& c) { return c.kind == kind; });
}

bool ScriptPart::has(PlannedImage::Source source) const {
    return std::ranges::any_of(plan.images, [source](const PlannedImage& i) { return i.source == source; });
}

bool ScriptPart::isRead(const std::string& picture) const {
    return std::ranges::any_of(plan.shaders, [&](const PlannedShader& shader) {
        return std::ranges::any_of(shader.samplers, [&](const PlannedSampler& s) { return s.picture == picture; });
    });
}

bool ScriptPart::hasCopies() const {
    return std::ranges::any_of(plan.images, [this](const PlannedImage& i) { return isRead(i.name); });
}

}  // namespace quillon::cli
