#pragma once

#include <filesystem>

namespace quillon::cli {

struct CheckOptions {
    std::filesystem::path effect;
};

// `quillon check`: tells what is wrong with an effect, from its files to a frame at each depth, and what looks wrong as
// warnings. Prints one line when nothing is wrong, and throws EffectFault when something is. Gives the exit status.
int RunCheck(const CheckOptions& options);

}  // namespace quillon::cli
