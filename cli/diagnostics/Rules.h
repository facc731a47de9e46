#pragma once

#include <span>
#include <string>
#include <string_view>

#include "cli/diagnostics/Diagnostic.h"

namespace quillon::cli {

// One thing that can be found in an effect.
struct Rule {
    // "KIND/words", with KIND as in a diagnostic's line. Authors silence a rule by its name, and programs read it, so
    // it never changes.
    std::string_view name;
    int level;  // of `quillon check`, 1 to 5, that looks for it first
    Diagnostic::Severity severity;
    const char* remedy;  // empty when each finding brings one, or when the text says it
};

// All rules, sorted by name.
std::span<const Rule> Rules();

// Null when there is no rule of this name.
const Rule* FindRule(std::string_view name);

// A finding by a rule of the table, with the rule's severity and kind. The line and the column count from 1, 0 when not
// known. An empty remedy is replaced by the rule's. Throws std::logic_error for a name that the table lacks.
Diagnostic Found(std::string_view rule, std::string path, int line, int column, std::string text,
                 std::string remedy = {});

}  // namespace quillon::cli
