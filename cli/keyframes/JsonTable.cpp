#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "cli/diagnostics/TextScanner.h"
#include "cli/diagnostics/ToolError.h"
#include "cli/keyframes/Keyframes.h"

// {"amount": {"0": 0, "24": [1, "smooth"]}, "center": {"0": [10, 20]}}: for each control its keys by frame. A value is
// a number, true or false, a text as --set takes it, or an array of numbers; [VALUE, "smooth"] also has the way to the
// next key.

namespace quillon::cli {

namespace {

using Json = nlohmann::json;

// The value as --set takes it.
std::string ValueText(const Json& value) {
    if (value.is_string()) return value.get<std::string>();
    if (!value.is_array()) return value.dump();
    std::string text;
    for (const Json& element : value) text += (text.empty() ? "" : ",") + element.dump();
    return text;
}

std::string KeyText(const Json& key) {
    const bool hasWay = key.is_array() && key.size() == 2 && key[1].is_string();
    return hasWay ? ValueText(key[0]) + "~" + key[1].get<std::string>() : ValueText(key);
}

}  // namespace

void Keyframes::addJson(std::string_view text) {
    Json table;
    try {
        table = Json::parse(text);
    } catch (const Json::exception& error) {
        const std::string words = error.what();
        throw Fault("", "is no JSON: " + words.substr(words.find(']') + 2));
    }
    if (!table.is_object()) throw Fault("", "holds no object with a control's name for each of its keys");
    for (const auto& [name, keys] : table.items()) {
        const Control& control = FindControl(controls, name);
        if (!keys.is_object() || keys.empty()) throw Fault(name, "needs an object of values by frame");
        for (const auto& [frameText, key] : keys.items()) {
            std::string_view rest = frameText;
            const auto frame = TakeNumber(rest);
            if (!frame || !rest.empty()) throw Fault(name, fmt::format("\"{}\" is no frame number", frameText));
            try {
                add(control, *frame, KeyText(key));
            } catch (ToolError& error) {
                error.faults.front().path += fmt::format(", frame {}", *frame);
                throw;
            }
        }
    }
}

}  // namespace quillon::cli
