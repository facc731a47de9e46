#pragma once

#include <set>
#include <string>

namespace quillon::cli {

// Definitions, in the old dialect, of functions that newer versions of GLSL have, and of those that stand in for
// operators. `words` are all words of a shader's text, `own` the functions that it defines itself: each function whose
// name is among the words and that the text does not define, with whatever those call. A line each.
std::string HelpersFor(const std::set<std::string>& words, const std::set<std::string>& own);

}  // namespace quillon::cli
