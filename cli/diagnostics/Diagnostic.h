#pragma once

#include <string>
#include <vector>

#include "cli/diagnostics/ToolError.h"

namespace quillon::cli {

// A fault inside an effect, as one line that editors jump to.
struct Diagnostic {
    enum class Severity { error, warning };
    enum class Kind { package, config, script, shader, render };

    std::string path;  // the author's own file, as the user names the effect's folder
    int line = 0;      // from 1; 0 when not known
    int column = 0;    // from 1, in characters; 0 when not known, and never without a line
    Severity severity = Severity::error;
    std::string text = {};
    Kind kind = Kind::script;

    bool operator==(const Diagnostic&) const = default;
};

using Diagnostics = std::vector<Diagnostic>;

// "PATH:LINE:COLUMN: error: TEXT [KIND]" without a line end; line breaks in the text become blanks.
std::string FormatDiagnostic(const Diagnostic& diagnostic);

// Each as a line on standard error.
void PrintWarnings(const Diagnostics& warnings);

// The end of a command over these faults, each told once however often it stands in the list.
ToolError EffectFault(const Diagnostics& diagnostics);

// Throws EffectFault unless the list is empty.
void ThrowIfAny(const Diagnostics& diagnostics);

}  // namespace quillon::cli
