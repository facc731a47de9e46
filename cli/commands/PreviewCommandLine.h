#pragma once

#include <CLI/CLI.hpp>
#include <functional>

namespace quillon::cli {

// Adds `quillon preview`, whose command line sets `run`.
void AddPreview(CLI::App& app, std::function<int()>& run);

}  // namespace quillon::cli
