#pragma once

#include <CLI/CLI.hpp>
#include <functional>

namespace quillon::cli {

// Adds the command `check`; `run` is what it does when it is the one that was given.
void AddCheck(CLI::App& app, std::function<int()>& run);

}  // namespace quillon::cli
