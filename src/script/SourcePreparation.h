#pragma once

#include <cstddef>
#include <string>

namespace quillon {

// Turns the effect's program into the text to evaluate: the prelude with the tables QL_Type, QL_GL and QL_ParamFlags,
// the program, and a call of setup(); with "import Q;" taken out once, every "Q.L." read as "QL_", and an empty
// preRender and updateUIFlags where the text names none. Never fails; an empty program is valid.
std::string PrepareScriptSource(const std::string& script);

// Lines of the prepared text in front of the program's first line, for mapping line numbers back to fx.js.
std::size_t PreludeLineCount();

}  // namespace quillon
