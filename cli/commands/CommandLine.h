#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cli/commands/Commands.h"

namespace quillon::cli {

// Reads the command line, UTF-8 and without the program's name, and runs the command that it names. Gives the exit
// status, or throws ToolError. `render` takes the place of RunRender.
int RunCommandLine(std::vector<std::string> arguments,
                   const std::function<int(const RenderOptions&)>& render = RunRender);

}  // namespace quillon::cli
