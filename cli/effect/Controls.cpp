#include "cli/effect/Controls.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>
#include <utility>

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

// Letters to add, remove or replace to make one text of the other.
std::size_t EditsBetween(std::string_view from, std::string_view to) {
    std::vector<std::size_t> edits(to.size() + 1);
    std::iota(edits.begin(), edits.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = std::exchange(edits[0], i + 1);
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t replaced = diagonal + (from[i] != to[j]);
            diagonal = edits[j + 1];
            edits[j + 1] = std::min({replaced, diagonal + 1, edits[j] + 1});
        }
    }
    return edits.back();
}

// The name that was probably meant; empty without one.
std::string NearestName(const std::vector<Control>& controls, std::string_view name) {
    std::string nearest;
    std::size_t least = name.size() / 3 + 1;
    for (const Control& control : controls) {
        for (const std::string& known : {control.declared.uniformName, control.declared.label}) {
            const std::size_t edits = EditsBetween(name, known);
            if (edits < least) least = edits, nearest = known;
        }
    }
    return nearest;
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
        const std::string nearest = NearestName(controls, name);
        throw WrongCommandLine(
            std::string(name), "the effect has no such control",
            (nearest.empty() ? "" : "did you mean " + nearest + "? ") + "its controls are:" + ListNames(controls));
    }
    if (std::count_if(controls.begin(), controls.end(), hasLabel) > 1) {
        throw WrongCommandLine(std::string(name), "several controls have this label",
                               "use a name:" + ListNames(controls));
    }
    return *byLabel;
}

}  // namespace quillon::cli
