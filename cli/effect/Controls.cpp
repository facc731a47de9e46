#include "cli/effect/Controls.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/diagnostics/NearestName.h"
#include "cli/diagnostics/ToolError.h"

namespace quillon::cli {

namespace {

std::string ListNames(const std::vector<Control>& controls) {
    std::string names;
    for (const Control& control : controls) {
        names += fmt::format("\n  {}  \"{}\"", control.declared.uniformName, control.declared.label);
    }
    return names;
}

std::vector<std::string> NamesAndLabels(const std::vector<Control>& controls) {
    std::vector<std::string> names;
    for (const Control& control : controls)
        names.insert(names.end(), {control.declared.uniformName, control.declared.label});
    return names;
}

}  // namespace

std::vector<Control> ControlsOf(const std::vector<Parameter>& declarations) {
    std::vector<Control> controls;
    for (const Parameter& declared : declarations) {
        const bool isShown = ControlKindOf(declared.kind).hostControl != HostControl::none;
        if (!isShown || (declared.flags & ParameterFlag::kHidden) != 0) continue;
        controls.push_back({static_cast<std::int32_t>(controls.size() + 1), declared});
    }
    return controls;
}

const Control& FindControl(const std::vector<Control>& controls, std::string_view name) {
    const auto byName = std::find_if(controls.begin(), controls.end(),
                                     [&](const Control& control) { return control.declared.uniformName == name; });
    if (byName != controls.end()) return *byName;
    const auto hasLabel = [&](const Control& control) { return control.declared.label == name; };
    const auto byLabel = std::find_if(controls.begin(), controls.end(), hasLabel);
    if (byLabel == controls.end()) {
        if (controls.empty()) throw WrongCommandLine(std::string(name), "the effect has no controls");
        const std::string nearest = DidYouMean(name, NamesAndLabels(controls));
        throw WrongCommandLine(std::string(name), "the effect has no such control",
                               nearest + (nearest.empty() ? "" : " ") + "its controls are:" + ListNames(controls));
    }
    if (std::count_if(controls.begin(), controls.end(), hasLabel) > 1) {
        throw WrongCommandLine(std::string(name), "several controls have this label",
                               "use a name:" + ListNames(controls));
    }
    return *byLabel;
}

}  // namespace quillon::cli
