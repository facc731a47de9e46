#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

#include "cli/commands/Commands.h"

// The commands with many options: each has a source that adds it to the command line. When the command is given, `run`
// becomes what it does, which gives the exit status or throws ToolError.
namespace quillon::cli {

void AddCheck(CLI::App& app, std::function<int()>& run);
void AddNew(CLI::App& app, std::function<int()>& run);
void AddPreview(CLI::App& app, std::function<int()>& run);

// `run` calls `render`, with `arguments`, the words of the command line, among its options.
void AddRender(CLI::App& app, std::function<int()>& run, const std::vector<std::string>& arguments,
               const std::function<int(const RenderOptions&)>& render);

}  // namespace quillon::cli
