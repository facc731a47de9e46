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

// A finding by the first rule explains one by the second, in the same line or, where `isOfFile`, in the same file.
constexpr struct {
    const char* cause;
    const char* consequence;
    bool isOfFile;
} kConsequences[] = {
    {"script/undeclared-name", "script/exception", false},
    {"script/unknown-member", "script/exception", false},
    {"script/wrong-kind", "script/ends-host", false},
    {"script/dead-id", "script/ends-host", false},
    {"script/not-es5", "script/syntax", true},
    {"script/entry-point-capitals", "script/no-entry-point", true},
    {"script/undeclared-name", "script/no-output", true},
    {"package/missing-picture", "script/dead-id", true},
    {"package/unreadable-picture", "script/dead-id", true},
    {"script/not-created", "script/unset-sampler", true},
};

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
                       return cause.rule == row.cause && cause.path == each.path &&
                              (row.isOfFile || cause.line == each.line);
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
