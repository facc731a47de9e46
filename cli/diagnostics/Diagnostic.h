#pragma once

#include <string>
#include <vector>

namespace quillon::cli {

// One thing that is wrong, with its place. Texts are UTF-8.
struct Diagnostic {
    enum class Severity { error, warning };
    // What is at fault: a part of an effect or, for `tool`, a file, the system or the command line.
    enum class Kind { package, config, script, shader, render, tool };

    std::string path = {};  // a file as the user names it; for `tool` whatever is at fault, empty when that is obvious
    int line = 0;           // from 1; 0 when not known
    int column = 0;         // from 1, in characters; 0 when not known, and never without a line
    Severity severity = Severity::error;
    std::string text = {};    // what is wrong
    std::string remedy = {};  // what the user can do; empty when the text says it, or when nothing is known
    Kind kind = Kind::script;
    std::string rule = {};  // its row in the table of rules, see Rules.h; empty for `tool`

    bool operator==(const Diagnostic&) const = default;
};

using Diagnostics = std::vector<Diagnostic>;

// Without a line end; line breaks in the text become blanks. A fault inside an effect is
// "PATH:LINE:COLUMN: error: TEXT; REMEDY [KIND]", which editors jump to; any other "quillon: error: PATH: TEXT;
// REMEDY", in which line breaks stay. Parts that are not known are left out.
std::string FormatDiagnostic(const Diagnostic& diagnostic);

// Each as a line on standard error.
void PrintDiagnostics(const Diagnostics& diagnostics);

}  // namespace quillon::cli
