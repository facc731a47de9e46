#pragma once

#include <string>

namespace quillon::cli {

// Exit statuses of the tool. Scripts rely on them.
inline constexpr int kFault = 1;             // the effect or a file is at fault
inline constexpr int kWrongCommandLine = 2;  // what was asked for makes no sense

// Ends the command; thrown anywhere, caught in main, which prints the text as it is.
struct ToolError {
    int exitStatus;
    std::string text;  // whole lines for standard error
};

// "quillon: error: WORDS". The words name place, fault and remedy.
ToolError Fault(const std::string& words);
ToolError WrongCommandLine(const std::string& words);

}  // namespace quillon::cli
