#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <cstring>

#include "cli/Controls.h"
#include "cli/ToolError.h"

namespace quillon::cli {

namespace {

template <class T>
void Put(ControlBytes& bytes, std::size_t word, T number) {
    static_assert(sizeof number == 4);
    std::memcpy(bytes.data() + 4 * word, &number, 4);
}

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
bool ParseNumbers(std::string_view text, std::size_t least, std::size_t most, ControlBytes& bytes) {
    const auto parts = Split(text, ',');
    if (parts.size() < least || parts.size() > most) return false;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const auto number = ParseNumber(parts[i]);
        if (!number) return false;
        Put(bytes, i, *number);
    }
    return true;
}

bool ParseHexColour(std::string_view digits, ControlBytes& bytes) {
    if (digits.size() != 6 && digits.size() != 8) return false;
    for (std::size_t i = 0; i < digits.size() / 2; ++i) {
        unsigned channel = 0;
        const char* first = digits.data() + 2 * i;
        const auto [end, error] = std::from_chars(first, first + 2, channel, 16);
        if (error != std::errc() || end != first + 2) return false;
        Put(bytes, i, static_cast<float>(channel) / 255.0f);
    }
    return true;
}

bool ParseOneNumber(const Parameter&, std::string_view text, ControlBytes& bytes) {
    return ParseNumbers(text, 1, 1, bytes);
}

bool ParsePoint(const Parameter&, std::string_view text, ControlBytes& bytes) {
    return ParseNumbers(text, 3, 3, bytes);
}

bool ParsePoint2D(const Parameter&, std::string_view text, ControlBytes& bytes) {
    return ParseNumbers(text, 2, 2, bytes);
}

bool ParseColour(const Parameter&, std::string_view text, ControlBytes& bytes) {
    Put(bytes, 3, 1.0f);
    if (text.starts_with('#')) return ParseHexColour(text.substr(1), bytes);
    return ParseNumbers(text, 3, 4, bytes);
}

bool ParseSwitch(const Parameter&, std::string_view text, ControlBytes& bytes) {
    const bool isOn = text == "true" || text == "1";
    Put(bytes, 0, std::int32_t{isOn});
    return isOn || text == "false" || text == "0";
}

// An entry's text comes first, so that entries that are numbers themselves mean what they say.
bool ParseChoice(const Parameter& control, std::string_view text, ControlBytes& bytes) {
    const auto entries = Split(control.choices, '|');
    std::size_t chosen = 0;
    for (std::size_t i = entries.size(); i > 0; --i) {
        if (entries[i - 1] == text) chosen = i;
    }
    if (chosen == 0) {
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), chosen);
        if (error != std::errc() || end != text.data() + text.size() || chosen > entries.size()) return false;
    }
    Put(bytes, 0, static_cast<std::int32_t>(chosen));
    return chosen != 0;
}

struct ValueForm {
    std::uint32_t kind;
    bool (*parse)(const Parameter& control, std::string_view text, ControlBytes& bytes);
    const char* expected;
};

constexpr ValueForm kValueForms[] = {
    {FLOAT, ParseOneNumber, "a number"},
    {ANGLE, ParseOneNumber, "a number of degrees"},
    {POINT, ParsePoint, "x,y,z"},
    {POINT2D, ParsePoint2D, "x,y in pixels"},
    {COLOR, ParseColour, "red,green,blue[,alpha] from 0 to 1, or #rrggbb[aa]"},
    {BOOL, ParseSwitch, "true or false"},
    {POPUP, ParseChoice, "one of the entries, or its number from 1"},
};

std::int32_t Truncate(float number, float low, float high) {
    return number >= low && number <= high ? static_cast<std::int32_t>(number) : 0;
}

// The 16-bit fraction of a declared position, in pixels of this extent.
float DefaultPosition(float declared, std::uint32_t extent) {
    const double scaled = std::trunc(static_cast<double>(declared * 65536.0f) + (declared < 0 ? -0.5 : 0.5));
    if (!(std::fabs(scaled) < 2147483648.0)) return 0;
    const auto fraction = static_cast<std::uint32_t>(static_cast<std::int32_t>(scaled)) & 0xFFFF;
    return static_cast<float>(fraction / 65536.0 * extent);
}

}  // namespace

ControlBytes ParseControlValue(const Parameter& control, std::string_view text) {
    if (control.kind == LAYER) {
        throw WrongCommandLine(
            fmt::format("{0}: is a layer; give it a picture with --layer {0}=FILE", control.uniformName));
    }
    for (const ValueForm& form : kValueForms) {
        if (form.kind != control.kind) continue;
        ControlBytes bytes{};
        if (form.parse(control, text, bytes)) return bytes;
        const std::string entries = control.kind == POPUP ? fmt::format(" ({})", control.choices) : "";
        throw WrongCommandLine(fmt::format("{}: \"{}\" is no value for it; it takes {}{}", control.uniformName, text,
                                           form.expected, entries));
    }
    throw WrongCommandLine(
        fmt::format("{}: groups, paths and textures have no value that can be set; leave it out", control.uniformName));
}

std::optional<ControlBytes> HostDefault(const Parameter& control, std::uint32_t inputWidth, std::uint32_t inputHeight) {
    ControlBytes bytes{};
    switch (control.kind) {
        case FLOAT:
            Put(bytes, 0, control.floatAt(0));
            break;
        case ANGLE: {
            const double fixed = control.floatAt(0) * 65536.0;
            Put(bytes, 0, std::fabs(fixed) < 2147483648.0 ? static_cast<float>(std::trunc(fixed) / 65536.0) : 0.0f);
            break;
        }
        case POINT:  // the host's third axis starts with the second's default
            Put(bytes, 0, control.floatAt(0));
            Put(bytes, 1, control.floatAt(1));
            Put(bytes, 2, control.floatAt(1));
            break;
        case POINT2D:
            Put(bytes, 0, DefaultPosition(control.floatAt(0), inputWidth));
            Put(bytes, 1, DefaultPosition(control.floatAt(1), inputHeight));
            break;
        case COLOR:
            for (int i = 0; i < 4; ++i) {
                Put(bytes, i, static_cast<float>(Truncate(control.floatAt(i), -1e9f, 1e9f) & 0xFF) / 255.0f);
            }
            break;
        case BOOL:
            Put(bytes, 0, control.intValue());
            break;
        case POPUP:
            Put(bytes, 0, std::int32_t{static_cast<std::int16_t>(control.intValue())});
            break;
        default:
            return {};
    }
    return bytes;
}

}  // namespace quillon::cli
