#include "cli/diagnostics/Diagnostic.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/diagnostics/PrintLine.h"

namespace quillon::cli {

namespace {

constexpr const char* kSeverities[] = {"error", "warning"};
constexpr const char* kKinds[] = {"package", "config", "script", "shader", "render"};

std::string WordsOf(const Diagnostic& diagnostic) {
    std::string words = diagnostic.text;
    while (!words.empty() && words.back() == '\n') words.pop_back();
    return diagnostic.remedy.empty() ? words : words + "; " + diagnostic.remedy;
}

}  // namespace

std::string FormatDiagnostic(const Diagnostic& diagnostic) {
    const char* const severity = kSeverities[static_cast<int>(diagnostic.severity)];
    if (diagnostic.kind == Diagnostic::Kind::tool) {
        const std::string place = diagnostic.path.empty() ? "" : diagnostic.path + ": ";
        return fmt::format("quillon: {}: {}{}", severity, place, WordsOf(diagnostic));
    }
    std::string place = diagnostic.path;
    if (diagnostic.line > 0) place += fmt::format(":{}", diagnostic.line);
    if (diagnostic.line > 0 && diagnostic.column > 0) place += fmt::format(":{}", diagnostic.column);
    std::string text = WordsOf(diagnostic);
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return fmt::format("{}: {}: {} [{}]", place, severity, text, kKinds[static_cast<int>(diagnostic.kind)]);
}

void PrintDiagnostics(const Diagnostics& diagnostics) {
    for (const Diagnostic& diagnostic : diagnostics) PrintWords(FormatDiagnostic(diagnostic));
}

}  // namespace quillon::cli
