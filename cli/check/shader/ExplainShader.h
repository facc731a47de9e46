#pragma once

#include <string>

#include "cli/check/shader/ShaderSource.h"
#include "cli/diagnostics/Diagnostic.h"

namespace quillon::cli {

// What a graphics driver says of a fragment shader.
struct DriverVerdict {
    enum class Outcome { usable, notCompiled, notLinked };

    Outcome outcome = Outcome::usable;
    std::string log;        // of the compiler, warnings too
    std::string spreadLog;  // of the compiler for the same text as SpreadText has it
    std::string linkLog;    // empty unless linking failed
};

// All that is wrong with a shader by its text and by the driver, in the order of the places. A fault that both find is
// there once, in the words of the text's check, and as an error where this driver refuses what only some drivers do.
// Follow-up faults are left out, as are more than 200 messages of the driver, and so are doubts about the text's form
// where the driver takes it. `path` is for the findings.
Diagnostics ExplainShader(const std::string& path, const ShaderSource& source, const DriverVerdict& verdict);

}  // namespace quillon::cli
