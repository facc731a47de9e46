#include "cli/diagnostics/Rules.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace quillon::cli {

namespace {

using enum Diagnostic::Severity;

constexpr Rule kRules[] = {
    {"config/not-utf8", 1, error, "save the file as UTF-8"},
    {"config/not-xml", 1, error, ""},
    {"package/missing-file", 1, error, ""},
    {"script/chance-in-draw", 2, warning, "compute it from QL_getTime() and a control for the seed"},
    {"script/entry-point-capitals", 2, error, ""},
    {"script/never-returns", 2, error, "end the loop that runs here, or do less in one call"},
    {"script/not-es5", 2, error, ""},
    {"script/not-utf8", 1, error, "save the file as UTF-8"},
    {"script/shadowed-function", 2, error, "give it another name"},
    {"script/undeclared-name", 2, error, "declare it with var, or look for a typing error"},
    {"script/unguarded-console", 2, warning, ""},
    {"script/unknown-member", 2, error, "docs/script-api.md lists its members"},
    {"script/wrong-argument-count", 2, error, "docs/script-api.md says what each argument is"},
};
static_assert(std::ranges::is_sorted(kRules, {}, &Rule::name));

Diagnostic::Kind KindOf(std::string_view rule) {
    constexpr std::pair<std::string_view, Diagnostic::Kind> kPrefixes[] = {
        {"config/", Diagnostic::Kind::config}, {"package/", Diagnostic::Kind::package},
        {"render/", Diagnostic::Kind::render}, {"script/", Diagnostic::Kind::script},
        {"shader/", Diagnostic::Kind::shader},
    };
    for (const auto& [prefix, kind] : kPrefixes)
        if (rule.starts_with(prefix)) return kind;
    throw std::logic_error("internal error: a rule of no kind: " + std::string(rule));
}

}  // namespace

std::span<const Rule> Rules() {
    return kRules;
}

const Rule* FindRule(std::string_view name) {
    const auto found = std::ranges::lower_bound(kRules, name, {}, &Rule::name);
    return found != std::end(kRules) && found->name == name ? found : nullptr;
}

Diagnostic Found(std::string_view rule, std::string path, int line, int column, std::string text, std::string remedy) {
    const Rule* const row = FindRule(rule);
    if (!row) throw std::logic_error("internal error: no rule is named " + std::string(rule));
    return {.path = std::move(path),
            .line = line,
            .column = column,
            .severity = row->severity,
            .text = std::move(text),
            .remedy = remedy.empty() ? row->remedy : std::move(remedy),
            .kind = KindOf(rule),
            .rule = std::string(rule)};
}

}  // namespace quillon::cli
