#include "cli/check/run/ControlEnds.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <iterator>

#include "cli/check/run/TestFrames.h"

namespace quillon::cli {

namespace {

ControlValue Numbers(float a, float b = 0, float c = 0, float d = 0) {
    return {.numbers = {a, b, c, d}};
}

ControlValue Whole(std::int32_t number) {
    return {.integer = number};
}

std::vector<ControlValue> EntriesOf(const Parameter& control) {
    std::vector<ControlValue> entries;
    for (std::uint32_t i = 1; i <= control.choiceCount; ++i) entries.push_back(Whole(static_cast<std::int32_t>(i)));
    return entries;
}

constexpr auto kRight = static_cast<float>(kTestExtent.width);
constexpr auto kBottom = static_cast<float>(kTestExtent.height);

// By what the host shows.
const struct {
    HostControl control;
    std::vector<ControlValue> (*ends)(const Parameter&);
} kEnds[] = {
    {HostControl::floatSlider,
     [](const Parameter& control) {
         return std::vector{Numbers(control.min[0]), Numbers(control.max[0])};
     }},
    {HostControl::angle,
     [](const Parameter&) {
         return std::vector{Numbers(-90), Numbers(30), Numbers(180)};
     }},
    {HostControl::point2D,
     [](const Parameter&) {
         return std::vector{Numbers(0, 0), Numbers(kRight, kBottom)};
     }},
    {HostControl::point3D,
     [](const Parameter&) {
         return std::vector{Numbers(0, 0, -500), Numbers(kRight, kBottom, 500)};
     }},
    {HostControl::color,
     [](const Parameter&) {
         return std::vector{Numbers(0, 0, 0, 1), Numbers(1, 1, 1, 1), Numbers(0.8f, 0.4f, 0.1f, 0.5f)};
     }},
    {HostControl::checkbox,
     [](const Parameter&) {
         return std::vector{Whole(0), Whole(1)};
     }},
    {HostControl::popup, EntriesOf},
};

}  // namespace

std::vector<ControlValue> EndsOf(const Control& control) {
    for (const auto& [hostControl, ends] : kEnds)
        if (hostControl == ControlKindOf(control.declared.kind).hostControl) return ends(control.declared);
    return {};
}

std::string WordsOfValue(const Control& control, const ControlValue& value) {
    const ControlKind& kind = ControlKindOf(control.declared.kind);
    const std::string words = kind.scriptForm == ScriptForm::integer
                                  ? fmt::format("{}", value.integer)
                                  : fmt::format("{}", fmt::join(value.numbers, value.numbers + kind.floats, ","));
    return fmt::format("'{}' at {}", control.declared.uniformName, words);
}

}  // namespace quillon::cli
