#pragma once

#include <CLI/CLI.hpp>
#include <functional>

namespace quillon::cli {

// Adds `quillon new`, whose command line sets `run`.
void AddNew(CLI::App& app, std::function<int()>& run);

}  // namespace quillon::cli
