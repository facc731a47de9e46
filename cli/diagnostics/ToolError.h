#pragma once

#include <exception>
#include <string>
#include <utility>

#include "cli/diagnostics/Diagnostic.h"

namespace quillon::cli {

// Exit statuses of the tool. Scripts rely on them.
inline constexpr int kFault = 1;             // the effect or a file is at fault
inline constexpr int kWrongCommandLine = 2;  // what was asked for makes no sense

// Ends the command: thrown anywhere, caught in main, which prints the faults. The one exception type of the tool.
class ToolError : public std::exception {
public:
    ToolError(int status, Diagnostics found) : exitStatus(status), faults(std::move(found)) {}

    // For those who catch any exception; main prints every fault.
    const char* what() const noexcept override { return faults.front().text.c_str(); }

    int exitStatus;
    Diagnostics faults;  // at least one
};

// A file or the system is at fault. `place` is what the user can look at, empty when that is obvious; the same for
// `remedy`.
ToolError Fault(const std::string& place, const std::string& fault, const std::string& remedy = "");

// The command line is at fault.
ToolError WrongCommandLine(const std::string& place, const std::string& fault, const std::string& remedy = "");

// An effect is at fault. The list is not empty; of equal entries one is kept.
ToolError EffectFault(const Diagnostics& faults);

// Throws EffectFault unless the list is empty.
void ThrowIfAny(const Diagnostics& faults);

}  // namespace quillon::cli
