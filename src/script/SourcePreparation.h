#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillon {

// What a program may write in short. The text is replaced wherever it occurs, inside words and comments too.
struct Shorthand {
    std::string_view written, meaning;
    bool isOnce;  // only its first occurrence counts
};
inline constexpr Shorthand kShorthands[] = {{"import Q;", " ", true}, {"Q.L.", "QL_", false}};

// Turns the effect's program into the text to evaluate: the prelude with the tables QL_Type, QL_GL and QL_ParamFlags,
// the program, and a call of setup(); with "import Q;" taken out once, every "Q.L." read as "QL_", and an empty
// preRender and updateUIFlags where the text names none. Never fails; an empty program is valid.
std::string PrepareScriptSource(const std::string& script);

// Lines of the prepared text in front of the program's first line, for mapping line numbers back to fx.js.
std::size_t PreludeLineCount();

}  // namespace quillon
