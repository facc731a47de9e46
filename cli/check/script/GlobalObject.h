#pragma once

#include <optional>
#include <set>
#include <string_view>

#include "cli/check/script/ScriptRules.h"

namespace quillon::cli {

// The names that a script may give to the global object in other ways than by a declaration or a plain assignment, such
// as `this.x = 1`. Nothing when it may give it names that are not in its text: it runs texts as code, or fills the
// global object in a loop.
std::optional<std::set<std::string_view>> NamesGivenToGlobalObject(const ScriptFacts& script);

}  // namespace quillon::cli
