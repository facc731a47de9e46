#include "cli/diagnostics/Diagnostic.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "cli/diagnostics/PrintLine.h"

namespace quillon::cli {

namespace {

constexpr const char* kSeverities[] = {"error", "warning"};
constexpr const char* kKinds[] = {"package", "config", "script", "shader", "render"};

}  // namespace

std::string FormatDiagnostic(const Diagnostic& diagnostic) {
    std::string place = diagnostic.path;
    if (diagnostic.line > 0) place += fmt::format(":{}", diagnostic.line);
    if (diagnostic.line > 0 && diagnostic.column > 0) place += fmt::format(":{}", diagnostic.column);
    std::string text = diagnostic.text;
    while (!text.empty() && text.back() == '\n') text.pop_back();
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return fmt::format("{}: {}: {} [{}]", place, kSeverities[static_cast<int>(diagnostic.severity)], text,
                       kKinds[static_cast<int>(diagnostic.kind)]);
}

void PrintWarnings(const Diagnostics& warnings) {
    for (const Diagnostic& warning : warnings) PrintLine(stderr, FormatDiagnostic(warning));
}

ToolError EffectFault(const Diagnostics& diagnostics) {
    Diagnostics told;
    ToolError error{kFault, {}};
    for (const Diagnostic& diagnostic : diagnostics) {
        if (std::find(told.begin(), told.end(), diagnostic) != told.end()) continue;
        told.push_back(diagnostic);
        error.text += FormatDiagnostic(diagnostic) + "\n";
    }
    return error;
}

void ThrowIfAny(const Diagnostics& diagnostics) {
    if (!diagnostics.empty()) throw EffectFault(diagnostics);
}

}  // namespace quillon::cli
