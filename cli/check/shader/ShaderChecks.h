#pragma once

#include <set>
#include <string>

#include "cli/check/shader/ShaderFindings.h"
#include "cli/check/shader/ShaderSource.h"

namespace quillon::cli {

// The families of checks. Each looks at the text only, in linear time, and takes no notice of what the preprocessor
// leaves out, or may leave out.

// What GLSL 1.10, the dialect of effects, does not have.
inline constexpr const char* kForeignRule = "shader/not-in-dialect";

// Brackets without a partner, comments without an end, characters that GLSL does not have.
void CheckForm(const ShaderSource& source, ShaderFindings& findings);
// Lines that begin with "#" and cannot do here what they do elsewhere.
void CheckDirectives(const ShaderSource& source, ShaderFindings& findings);
// Whether the engine finds the function main() and puts its own around it; functions without a body.
void CheckFunctions(const ShaderSource& source, ShaderFindings& findings);
// Reads of pictures whose channels the engine does not put in order.
void CheckReads(const ShaderSource& source, ShaderFindings& findings);
// Variables that nothing can fill.
void CheckVariables(const ShaderSource& source, ShaderFindings& findings);
// Loops that some drivers cannot take.
void CheckLoops(const ShaderSource& source, ShaderFindings& findings);
// Words, numbers and operators of other languages, and of later versions of this one.
void CheckDialect(const ShaderSource& source, ShaderFindings& findings);

// Names that the text gives to functions, macros and constants.
struct OwnNames {
    explicit OwnNames(const ShaderSource& source);

    std::set<std::string> functions;  // defined or declared
    std::set<std::string> macros;
    std::set<std::string> constants;

    bool holdsCallable(const std::string& name) const { return functions.contains(name) || macros.contains(name); }
};

// Whether the list, of words with blanks between them, holds this word.
bool HoldsName(std::string_view list, std::string_view word);

}  // namespace quillon::cli
