#pragma once

#include <cstddef>
#include <string>

#include "cli/check/watch/CallCheck.h"
#include "cli/check/watch/Signatures.h"

namespace quillon::cli {

enum class Fit { fits, namesNothing, isWrong };

// Of a call's argument in this role. One that was not given fits where it is no id: that is seen in the text.
Fit FitOf(Role role, const NativeCall& call, std::size_t argument);

// Whether the role asks for something. "the id of a shader": what it is.
bool HasDemands(Role role);
const char* WordsOfRole(Role role);

// "undefined", "the text \"blur\"", "a target made in line 12".
std::string WordsOfArgument(const WatchedRun& run, const NativeCall& call, std::size_t argument);

// Nothing was given: undefined, null, or no argument.
bool IsLeftOut(const NativeCall& call, std::size_t argument);

}  // namespace quillon::cli
