#pragma once

#include <string>
#include <vector>

namespace quillon::cli {

// Reads the command line, UTF-8 and without the program's name, and runs the command that it names. Gives the exit
// status, or throws ToolError.
int RunCommandLine(std::vector<std::string> arguments);

}  // namespace quillon::cli
