#pragma once

#include <filesystem>

namespace quillon::cli {

struct PackOptions {
    std::filesystem::path folder;
    std::filesystem::path output;
};

// `quillon pack`: makes the effect's module and prints its path. Gives the exit status.
int RunPack(const PackOptions& options);

}  // namespace quillon::cli
