#include "cli/effect/ControlValues.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "cli/diagnostics/ToolError.h"

namespace quillon::cli {

namespace {

std::vector<std::string_view> Split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t end = text.find(separator);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

std::string_view Trim(std::string_view text) {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return text;
}

std::optional<float> ParseNumber(std::string_view text) {
    text = Trim(text);
    float number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(number)) return {};
    return number;
}

// Between `least` and `most` numbers with commas between them.
bool ParseNumbers(std::string_view text, std::size_t least, std::size_t most, ControlValue& value) {
    const auto parts = Split(text, ',');
    if (parts.size() < least || parts.size() > most) return false;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const auto number = ParseNumber(parts[i]);
        if (!number) return false;
        value.numbers[i] = *number;
    }
    return true;
}

bool ParseHexColor(std::string_view digits, ControlValue& value) {
    if (digits.size() != 6 && digits.size() != 8) return false;
    for (std::size_t i = 0; i < digits.size() / 2; ++i) {
        unsigned channel = 0;
        const char* first = digits.data() + 2 * i;
        const auto [end, error] = std::from_chars(first, first + 2, channel, 16);
        if (error != std::errc() || end != first + 2) return false;
        value.numbers[i] = static_cast<float>(channel) / 255.0f;
    }
    return true;
}

bool ParseOneNumber(const Parameter&, std::string_view text, ControlValue& value) {
    return ParseNumbers(text, 1, 1, value);
}

bool ParsePoint(const Parameter&, std::string_view text, ControlValue& value) {
    return ParseNumbers(text, 3, 3, value);
}

bool ParsePoint2D(const Parameter&, std::string_view text, ControlValue& value) {
    return ParseNumbers(text, 2, 2, value);
}

bool ParseColor(const Parameter&, std::string_view text, ControlValue& value) {
    value.numbers[3] = 1;
    if (text.starts_with('#')) return ParseHexColor(text.substr(1), value);
    return ParseNumbers(text, 3, 4, value);
}

bool ParseSwitch(const Parameter&, std::string_view text, ControlValue& value) {
    const bool isOn = text == "true" || text == "1";
    value.integer = isOn;
    return isOn || text == "false" || text == "0";
}

// An entry's text comes first, so that entries that are numbers themselves mean what they say.
bool ParseChoice(const Parameter& control, std::string_view text, ControlValue& value) {
    const auto entries = Split(control.choices, '|');
    std::size_t chosen = 0;
    for (std::size_t i = entries.size(); i > 0; --i) {
        if (entries[i - 1] == text) chosen = i;
    }
    if (chosen == 0) {
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), chosen);
        if (error != std::errc() || end != text.data() + text.size() || chosen > entries.size()) return false;
    }
    value.integer = static_cast<std::int32_t>(chosen);
    return chosen != 0;
}

void SetFloat(host::HostInstance& instance, PF_ParamIndex index, const ControlValue& value, std::uint32_t) {
    instance.setFloat(index, value.numbers[0]);
}

void SetAngle(host::HostInstance& instance, PF_ParamIndex index, const ControlValue& value, std::uint32_t) {
    instance.setAngle(index, value.numbers[0]);
}

void SetPoint(host::HostInstance& instance, PF_ParamIndex index, const ControlValue& value, std::uint32_t) {
    instance.setPoint3D(index, value.numbers[0], value.numbers[1], value.numbers[2]);
}

void SetPoint2D(host::HostInstance& instance, PF_ParamIndex index, const ControlValue& value,
                std::uint32_t downsample) {
    instance.setPoint(index, double{value.numbers[0]} / downsample, double{value.numbers[1]} / downsample);
}

void SetColor(host::HostInstance& instance, PF_ParamIndex index, const ControlValue& value, std::uint32_t) {
    const auto& [red, green, blue, alpha] = value.numbers;
    instance.setColor(index, {.alpha = alpha, .red = red, .green = green, .blue = blue});
}

void SetCheckbox(host::HostInstance& instance, PF_ParamIndex index, const ControlValue& value, std::uint32_t) {
    instance.setCheckbox(index, value.integer != 0);
}

void SetPopup(host::HostInstance& instance, PF_ParamIndex index, const ControlValue& value, std::uint32_t) {
    instance.setPopup(index, value.integer);
}

struct ValueForm {
    HostControl control;
    bool (*parse)(const Parameter& control, std::string_view text, ControlValue& value);
    void (*set)(host::HostInstance& instance, PF_ParamIndex index, const ControlValue& value, std::uint32_t downsample);
};

constexpr ValueForm kValueForms[] = {
    {HostControl::floatSlider, ParseOneNumber, SetFloat}, {HostControl::angle, ParseOneNumber, SetAngle},
    {HostControl::point3D, ParsePoint, SetPoint},         {HostControl::point2D, ParsePoint2D, SetPoint2D},
    {HostControl::color, ParseColor, SetColor},           {HostControl::checkbox, ParseSwitch, SetCheckbox},
    {HostControl::popup, ParseChoice, SetPopup},
};

}  // namespace

ControlValue ParseControlValue(const Parameter& control, std::string_view text) {
    const ControlKind& kind = ControlKindOf(control.kind);
    if (kind.hostControl == HostControl::layer) {
        throw WrongCommandLine(control.uniformName, "is a layer",
                               fmt::format("give it a picture with --layer {}=FILE", control.uniformName));
    }
    for (const ValueForm& form : kValueForms) {
        if (form.control != kind.hostControl) continue;
        ControlValue value;
        if (form.parse(control, text, value)) return value;
        const std::string entries = kind.hostControl == HostControl::popup ? fmt::format(" ({})", control.choices) : "";
        throw WrongCommandLine(control.uniformName, fmt::format("\"{}\" is not a value for it", text),
                               fmt::format("it takes {}{}", kind.toolForm, entries));
    }
    throw WrongCommandLine(control.uniformName, "groups, paths and textures have no value that can be set",
                           "leave it out");
}

void SetControl(host::HostInstance& instance, const Control& control, const ControlValue& value,
                std::uint32_t downsample) {
    for (const ValueForm& form : kValueForms)
        if (form.control == ControlKindOf(control.declared.kind).hostControl)
            form.set(instance, control.index, value, downsample);
}

}  // namespace quillon::cli
