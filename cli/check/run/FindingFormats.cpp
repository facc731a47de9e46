#include "cli/check/run/FindingFormats.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "cli/diagnostics/Rules.h"
#include "cli/diagnostics/TextScanner.h"

namespace quillon::cli {

namespace {

using Json = nlohmann::ordered_json;

const char* LevelOf(Diagnostic::Severity severity) {
    return severity == Diagnostic::Severity::error ? "error" : "warning";
}

std::string MessageOf(const Diagnostic& finding) {
    return finding.remedy.empty() ? finding.text : finding.text + "; " + finding.remedy;
}

std::size_t CountOf(const CheckedEffect& checked, Diagnostic::Severity severity) {
    return static_cast<std::size_t>(std::ranges::count(checked.findings, severity, &Diagnostic::severity));
}

// A path as a URI reference. The drive of a Windows path would be read as a scheme.
std::string UriOf(std::string_view path) {
    std::string uri = path.size() > 1 && path[1] == ':' ? "file:///" : "";
    for (const char c : path) {
        const bool isPlain = IsWordCharacter(c) || std::string_view("/.-~").find(c) != std::string_view::npos;
        if (isPlain || (c == ':' && uri == "file:///" + std::string(path.substr(0, 1))))
            uri += c;
        else
            uri += fmt::format("%{:02X}", static_cast<unsigned char>(c));
    }
    return uri;
}

Json SarifRules() {
    Json rules = Json::array();
    for (const Rule& rule : Rules()) {
        rules.push_back({{"id", rule.name}, {"defaultConfiguration", {{"level", LevelOf(rule.severity)}}}});
        if (*rule.remedy) rules.back()["help"] = {{"text", rule.remedy}};
    }
    return rules;
}

Json SarifResult(const Diagnostic& finding) {
    Json place = {{"artifactLocation", {{"uri", UriOf(finding.path)}}}};
    if (finding.line > 0) place["region"] = {{"startLine", finding.line}};
    if (finding.line > 0 && finding.column > 0) place["region"]["startColumn"] = finding.column;
    const Rule* const rule = FindRule(finding.rule);
    Json result = {{"ruleId", finding.rule}};
    if (rule) result["ruleIndex"] = rule - Rules().data();
    result["level"] = LevelOf(finding.severity);
    result["message"] = {{"text", MessageOf(finding)}};
    result["locations"] = Json::array({Json{{"physicalLocation", place}}});
    return result;
}

// The author's line, without what would move the cursor.
std::string LineOf(const EffectSource& source, const Diagnostic& finding) {
    for (const PackageFile& file : source.files) {
        if (source.pathOf(file.name) != finding.path) continue;
        const std::string content = source.textOf(file.name);
        std::string_view rest = content;
        if (rest.starts_with("\xEF\xBB\xBF")) rest.remove_prefix(3);
        for (int line = 1; line < finding.line && !rest.empty(); ++line)
            rest.remove_prefix(
                std::min(rest.size(), rest.find('\n') == std::string_view::npos ? rest.size() : rest.find('\n') + 1));
        std::string text(rest.substr(0, rest.find_first_of("\r\n")));
        std::ranges::replace_if(
            text, [](char c) { return (c >= 0 && c < ' ') || c == 0x7F; }, ' ');
        return text;
    }
    return "";
}

// Of a long line the part around the column, in characters, as far as a terminal has room.
constexpr std::size_t kMostShown = 100;

struct ShownLine {
    std::string text;
    std::size_t markAt;  // characters before the mark
};

ShownLine CutAround(const std::string& line, std::size_t column) {
    std::vector<std::size_t> starts;  // of characters
    for (std::size_t i = 0; i < line.size(); ++i)
        if ((line[i] & 0xC0) != 0x80) starts.push_back(i);
    const std::size_t at = column == 0 ? 0 : column - 1;
    const std::size_t first = at > kMostShown / 2 && starts.size() > kMostShown ? at - kMostShown / 2 : 0;
    if (first >= starts.size()) return {line, at};
    const std::size_t end = first + kMostShown < starts.size() ? starts[first + kMostShown] : line.size();
    return {line.substr(starts[first], end - starts[first]), at - first};
}

}  // namespace

Json FindingsAsJson(std::span<const CheckOutcome> outcomes) {
    Json effects = Json::array();
    for (const CheckOutcome& outcome : outcomes) {
        Json findings = Json::array();
        for (const Diagnostic& finding : outcome.checked.findings)
            findings.push_back({{"rule", finding.rule},
                                {"severity", LevelOf(finding.severity)},
                                {"path", finding.path},
                                {"line", finding.line},
                                {"column", finding.column},
                                {"text", finding.text},
                                {"remedy", finding.remedy}});
        Json effect = {{"effect", outcome.effect},
                       {"errors", CountOf(outcome.checked, Diagnostic::Severity::error)},
                       {"warnings", CountOf(outcome.checked, Diagnostic::Severity::warning)},
                       {"findings", findings}};
        if (!outcome.faults.empty()) effect["fault"] = MessageOf(outcome.faults.front());
        effects.push_back(effect);
    }
    return {{"format", 1}, {"effects", effects}};
}

Json FindingsAsSarif(std::span<const CheckOutcome> outcomes, const std::string& version) {
    Json results = Json::array(), notifications = Json::array();
    for (const CheckOutcome& outcome : outcomes) {
        for (const Diagnostic& finding : outcome.checked.findings) results.push_back(SarifResult(finding));
        for (const Diagnostic& fault : outcome.faults)
            notifications.push_back({{"level", "error"}, {"message", {{"text", MessageOf(fault)}}}});
    }
    Json invocation = {{"executionSuccessful", notifications.empty()}};
    if (!notifications.empty()) invocation["toolExecutionNotifications"] = notifications;
    const Json run = {{"tool", {{"driver", {{"name", "quillon"}, {"version", version}, {"rules", SarifRules()}}}}},
                      {"invocations", Json::array({invocation})},
                      {"columnKind", "unicodeCodePoints"},
                      {"results", results}};
    return {{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
            {"version", "2.1.0"},
            {"runs", Json::array({run})}};
}

std::string FindingForTerminal(const Diagnostic& finding, const EffectSource& source, bool hasColors) {
    const bool isError = finding.severity == Diagnostic::Severity::error;
    const auto colored = [&](const char* color, const std::string& text) {
        return hasColors ? fmt::format("\x1b[{}m{}\x1b[0m", color, text) : text;
    };
    std::string words = FormatDiagnostic(finding);
    const std::string severity = fmt::format(": {}: ", LevelOf(finding.severity));
    if (const std::size_t at = words.find(severity); hasColors && at != std::string::npos)
        words.replace(at, severity.size(),
                      fmt::format(": {}: ", colored(isError ? "1;31" : "1;33", LevelOf(finding.severity))));
    const std::string line = finding.line > 0 ? LineOf(source, finding) : "";
    const std::string number = fmt::format("{:>5}", finding.line);
    if (!line.empty()) {
        const ShownLine shown = CutAround(line, static_cast<std::size_t>(finding.column));
        words += fmt::format("\n{} | {}", number, shown.text);
        if (finding.column > 0)
            words +=
                fmt::format("\n      | {}{}", std::string(shown.markAt, ' '), colored(isError ? "1;31" : "1;33", "^"));
    }
    if (!finding.rule.empty()) words += fmt::format("\n      = {}", colored("2", finding.rule));
    return words;
}

}  // namespace quillon::cli
