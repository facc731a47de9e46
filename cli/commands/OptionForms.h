#pragma once

#include <CLI/CLI.hpp>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/diagnostics/TextScanner.h"
#include "platform/Utf8Path.h"

namespace quillon::cli {

// Options whose values have a form: each is written into its place while the command line is read. A text of another
// form is reported by CLI11's own exceptions, with the form and an example.

// Two numbers with a separator between them, each from `least` to 99999, into two places.
template <class First, class Second>
CLI::Option* AddPair(CLI::App& command, const char* option, char separator, int least, const char* form,
                     const char* example, First& first, Second& second, const std::string& description) {
    const auto read = [=, &first, &second](const std::string& text) {
        std::string_view rest = text;
        const auto left = TakeNumber(rest);
        const bool isParted = TakeText(rest, std::string_view(&separator, 1));
        const auto right = TakeNumber(rest);
        const auto fits = [least](const std::optional<int>& number) {
            return number && *number >= least && *number < 100000;
        };
        if (!fits(left) || !isParted || !fits(right) || !rest.empty()) {
            throw CLI::ValidationError(std::string(option) + " " + text,
                                       std::string("write it as ") + form + ", as in " + example);
        }
        first = static_cast<First>(*left);
        second = static_cast<Second>(*right);
    };
    return command.add_option_function<std::string>(option, read, description)->type_name(form);
}

// One of some words, each for a value.
template <class Value, class Target>
void AddChoice(CLI::App& command, const char* option, std::initializer_list<std::pair<const char*, Value>> choices,
               const char* form, Target& target, const std::string& description) {
    std::map<std::string, Value> values;
    std::vector<std::string> names;
    for (const auto& [name, value] : choices) {
        values.emplace(name, value);
        names.push_back(name);
    }
    command
        .add_option_function<std::string>(
            option, [values, &target](const std::string& name) { target = values.at(name); }, description)
        ->check(CLI::IsMember(names))
        ->type_name(form);
}

// Also refuses what CLI11's ranges let through: NaN is not below or above any limit.
inline const CLI::Validator kIsFinite(
    [](const std::string& text) {
        double number = 0;
        const bool isFinite = !CLI::detail::lexical_cast(text, number) || std::isfinite(number);
        return isFinite ? std::string() : text + " is not a number that it can take";
    },
    "");

// A path in UTF-8. An empty one, such as a shell makes of a variable that is not set, would count as left out.
inline CLI::Option* AddPath(CLI::App& command, const char* option, std::filesystem::path& path,
                            const std::string& description) {
    const auto read = [&path, name = std::string(option)](const std::string& text) {
        if (text.empty()) throw CLI::ValidationError(name, "its path is empty");
        path = PathFromUtf8(text);
    };
    return command.add_option_function<std::string>(option, read, description);
}

// Two sides in pixels.
inline void AddSize(CLI::App& command, const char* option, std::uint32_t& width, std::uint32_t& height,
                    const std::string& description) {
    AddPair(command, option, 'x', 1, "WIDTHxHEIGHT", "1920x1080", width, height, description);
}

}  // namespace quillon::cli
