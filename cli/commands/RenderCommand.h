#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "host/HostSettings.h"

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

    host::HostKind host = host::HostKind::afterEffects;
    std::int32_t hostVersionMajor = 13;
    std::int32_t hostVersionMinor = 9;
    std::optional<host::Route> route;
    std::uint32_t downsample = 1;
    PF_RationalScale pixelAspect{1, 1};
    std::uint32_t compWidth = 0;  // 0: as the input
    std::uint32_t compHeight = 0;
};

// `quillon render`: renders one picture or a sequence, and prints the path of each as it is written. Gives the exit
// status.
int RunRender(const RenderOptions& options);

}  // namespace quillon::cli
