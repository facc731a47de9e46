#pragma once

namespace quillon::cli {

// Reads the command line and runs the command that it names. Gives the exit status, or throws ToolError.
int RunCommandLine(int argc, char** argv);

}  // namespace quillon::cli
