#pragma once

#include <CLI/CLI.hpp>
#include <vector>

#include "cli/completion/CommandShape.h"

namespace quillon::cli {

// What the command line's own description says of its commands, except those that are not for people.
std::vector<CommandShape> DescribeCommands(const CLI::App& app);

}  // namespace quillon::cli
