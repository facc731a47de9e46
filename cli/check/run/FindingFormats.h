#pragma once

#include <nlohmann/json.hpp>
#include <span>
#include <string>

#include "cli/check/run/CheckEffect.h"

namespace quillon::cli {

// What came of one effect of a command line.
struct CheckOutcome {
    std::string effect;  // as the user names it
    CheckedEffect checked;
    Diagnostics faults;  // why it could not be checked at all, of kind `tool`; mostly none
};

// The forms that docs/check.md describes.
nlohmann::ordered_json FindingsAsJson(std::span<const CheckOutcome> outcomes);
// SARIF 2.1.0, one run. `version` is the tool's own.
nlohmann::ordered_json FindingsAsSarif(std::span<const CheckOutcome> outcomes, const std::string& version);

// The finding's line as in a pipe, then the author's line with a mark below the column, and the rule's name. Without a
// line end.
std::string FindingForTerminal(const Diagnostic& finding, const EffectSource& source, bool hasColors);

}  // namespace quillon::cli
