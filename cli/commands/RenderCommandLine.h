#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

#include "cli/commands/Commands.h"

namespace quillon::cli {

// Adds `render` with its options to the command line. When that is the command, `run` becomes a call of `render`, with
// `arguments` among its options.
void AddRender(CLI::App& app, std::function<int()>& run, const std::vector<std::string>& arguments,
               const std::function<int(const RenderOptions&)>& render);

}  // namespace quillon::cli
