#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/diagnostics/Diagnostic.h"

namespace quillon::cli {

// What can be said of fx.js without running it. The text is the file as it is, the path is for the findings, which
// come in the order of the text. A text that is no script gives only the forms of later editions that are in it; its
// syntax error is the engine's to report. Never fails, and takes time in proportion to the text.
Diagnostics CheckScriptText(const std::string& path, std::string_view text);

// Where a text stops being a script, of ECMAScript 5 or later: the first token that cannot be there.
struct ScriptBreak {
    int line, column;   // from 1, as in findings
    std::string token;  // empty at the end of the text, and for what is no token
};
std::optional<ScriptBreak> WhereScriptBreaks(std::string_view text);

// A function of a script, and the lines that it covers.
struct ScriptFunction {
    std::string name;         // as it is declared or assigned; empty without one
    int firstLine, lastLine;  // of the author's text, from 1
};

// The functions of a script in the order of the text, those inside others too.
std::vector<ScriptFunction> FunctionsOfScript(std::string_view text);

}  // namespace quillon::cli
