#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace quillon::cli {

struct RenderOptions {
    std::filesystem::path effect;
    std::filesystem::path input;
    std::filesystem::path output;
    std::uint32_t depth = 0;  // bits per channel; 0: what the input has
    double timeSeconds = 0;
    std::string frames;  // FIRST-LAST[xSTEP]; empty: one moment
    double framesPerSecond = 25;
    std::vector<std::string> values;  // NAME=VALUE
    std::vector<std::string> layers;  // NAME=FILE
    std::uint32_t rawWidth = 0;       // of raw inputs; 0: not given
    std::uint32_t rawHeight = 0;
};

// `quillon render`: renders one picture or a sequence, and prints the path of each as it is written. Gives the exit
// status.
int RunRender(const RenderOptions& options);

}  // namespace quillon::cli
