#include "cli/check/run/FindingList.h"

#include <fmt/format.h>

#include <algorithm>
#include <tuple>
#include <utility>

#include "cli/diagnostics/Rules.h"

namespace quillon::cli {

namespace {

// What is said of the whole effect has numbers in it, which differ from frame to frame. Controls are different things.
bool IsSame(const Diagnostic& one, const Diagnostic& other) {
    if (std::tie(one.path, one.line, one.column, one.rule) !=
        std::tie(other.path, other.line, other.column, other.rule))
        return false;
    const bool isOfFrame = one.kind == Diagnostic::Kind::render && one.line == 0;
    return one.text == other.text || (isOfFrame && one.rule != "render/control-without-effect");
}

// A finding by the first rule explains one by the second: in the same line, in the same file, or anywhere.
enum class Reach { line, file, effect };
constexpr struct {
    const char* cause;
    const char* consequence;
    Reach reach;
} kConsequences[] = {
    {"config/not-number", "config/flags", Reach::line},
    {"package/missing-picture", "script/dead-id", Reach::file},
    {"package/unreadable-picture", "script/dead-id", Reach::file},
    {"render/frame-order", "render/instances-share", Reach::effect},
    {"render/keeps-damage", "render/instances-share", Reach::effect},
    {"script/dead-id", "script/ends-host", Reach::line},
    {"script/dead-id", "script/no-output", Reach::file},
    {"script/entry-point-capitals", "script/no-entry-point", Reach::file},
    {"script/not-created", "script/unset-sampler", Reach::file},
    {"script/not-es5", "script/syntax", Reach::file},
    {"script/release-in-use", "render/failed", Reach::effect},
    {"script/release-in-use", "script/dead-id", Reach::file},
    {"script/undeclared-name", "script/exception", Reach::line},
    {"script/undeclared-name", "script/no-output", Reach::file},
    {"script/unknown-member", "script/exception", Reach::line},
    {"script/unknown-member", "script/unknown-kind", Reach::file},
    {"script/wrong-kind", "script/ends-host", Reach::line},
    {"script/wrong-value", "script/empty-range", Reach::file},
    {"shader/no-result", "script/unknown-uniform", Reach::effect},
    {"shader/number-suffix", "shader/warning", Reach::line},
    {"shader/unclosed-comment", "shader/no-main", Reach::file},
};

bool Explains(const Diagnostic& cause, const Diagnostic& each, Reach reach) {
    // An effect that has an error still has one afterwards.
    if (each.severity == Diagnostic::Severity::error && cause.severity != Diagnostic::Severity::error) return false;
    return reach == Reach::effect || (cause.path == each.path && (reach == Reach::file || cause.line == each.line));
}

}  // namespace

void FindingList::add(const Diagnostics& found, const std::string& situation) {
    for (const Diagnostic& each : found) {
        if (const Rule* const rule = FindRule(each.rule); rule && rule->level > level) continue;
        if (std::ranges::any_of(seen, [&](const Diagnostic& known) { return IsSame(known, each); })) continue;
        seen.push_back(each);
        findings.push_back(each);
        if (!situation.empty()) findings.back().text += fmt::format(" ({})", situation);
    }
}

bool FindingList::hasErrors() const {
    return std::ranges::any_of(seen,
                               [](const Diagnostic& each) { return each.severity == Diagnostic::Severity::error; });
}

Diagnostics FindingList::take() {
    Diagnostics all = std::exchange(findings, {});
    const Diagnostics causes = all;
    std::erase_if(all, [&](const Diagnostic& each) {
        return std::ranges::any_of(kConsequences, [&](const auto& row) {
            return each.rule == row.consequence && std::ranges::any_of(causes, [&](const Diagnostic& cause) {
                       return cause.rule == row.cause && Explains(cause, each, row.reach);
                   });
        });
    });
    return all;
}

Diagnostics InOrder(Diagnostics findings) {
    const auto place = [](const Diagnostic& each) {
        const bool isOfWhole = each.kind == Diagnostic::Kind::render && each.line == 0;
        return std::tuple(isOfWhole, each.path, each.line, each.column);
    };
    std::ranges::stable_sort(findings, {}, place);
    return findings;
}

}  // namespace quillon::cli
