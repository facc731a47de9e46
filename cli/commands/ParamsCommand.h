#pragma once

#include <filesystem>

namespace quillon::cli {

struct ParamsOptions {
    std::filesystem::path effect;
    bool isJson = false;
};

// `quillon params`: prints the effect's controls as its host has got them. Gives the exit status.
int RunParams(const ParamsOptions& options);

}  // namespace quillon::cli
