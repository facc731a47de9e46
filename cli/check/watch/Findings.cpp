#include "cli/check/watch/Findings.h"

#include <fmt/format.h>

#include <algorithm>
#include <sstream>
#include <utility>

#include "cli/diagnostics/Rules.h"
#include "cli/diagnostics/TextScanner.h"
#include "script/NativeCalls.h"
#include "script/SourcePreparation.h"

namespace quillon::cli {

namespace {

constexpr std::string_view kPrefix = "QL_";
constexpr std::string_view kShorthand = "Q.L.";

// Where the word is in the line, unless it is there more than once.
std::size_t FindOnly(std::string_view line, std::string_view word) {
    const std::size_t at = line.find(word);
    const bool isOnly = at == std::string_view::npos || line.find(word, at + 1) == std::string_view::npos;
    return isOnly ? at : std::string_view::npos;
}

int DrawLine(const std::vector<std::string>& lines) {
    for (std::size_t i = 0; i < lines.size(); ++i)
        if (HoldsWord(lines[i], "draw") && HoldsWord(lines[i], "function")) return static_cast<int>(i) + 1;
    return 0;
}

}  // namespace

Findings::Findings(const EffectSource& source) : path(source.pathOf("fx.js")) {
    std::istringstream program(source.textOf("fx.js"));
    for (std::string line; std::getline(program, line);) lines.push_back(line);
}

Place Findings::placeOf(const NativeCall& call) const {
    const int line = authorLine(LineOf(call));
    return {line, columnOf(line, call.name())};
}

void Findings::add(std::string_view rule, const Place& place, std::string text, std::string remedy,
                   const std::string& key) {
    if (!seen.emplace(rule, place.line, key).second) return;
    found.push_back(Found(rule, path, place.line, place.column, std::move(text), std::move(remedy)));
}

void Findings::add(std::string_view rule, const NativeCall& call, const std::string& text, std::string remedy,
                   const std::string& key) {
    add(rule, placeOf(call), fmt::format("{}: {}", call.name(), text), std::move(remedy), key);
}

void Findings::addAtDraw(std::string_view rule, std::string text, std::string remedy) {
    add(rule, Place{DrawLine(lines)}, std::move(text), std::move(remedy));
}

std::string Findings::wordsOfLine(int preparedLine) const {
    const int line = authorLine(preparedLine);
    return line > 0 ? fmt::format(" in line {}", line) : "";
}

Diagnostics Findings::take() {
    return std::exchange(found, {});
}

int Findings::authorLine(int preparedLine) const {
    const int line = preparedLine - static_cast<int>(PreludeLineCount());
    return line > 0 && line <= static_cast<int>(lines.size()) ? line : 0;
}

int Findings::columnOf(int line, std::string_view native) const {
    if (line == 0) return 0;
    const std::string_view text = lines[static_cast<std::size_t>(line) - 1];
    std::size_t at = FindOnly(text, native);
    if (at == std::string_view::npos)
        at = FindOnly(text, std::string(kShorthand) + std::string(native.substr(kPrefix.size())));
    if (at == std::string_view::npos) return 0;
    const std::string_view before = text.substr(0, at);
    return 1 + static_cast<int>(std::ranges::count_if(before, [](char c) { return (c & 0xC0) != 0x80; }));
}

int LineOf(const NativeCall& call) {
    int line = 0;
    call.lines({&line, 1});
    return line;
}

}  // namespace quillon::cli
