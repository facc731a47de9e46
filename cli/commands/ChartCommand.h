#pragma once

#include <cstdint>
#include <filesystem>

namespace quillon::cli {

struct ChartOptions {
    std::filesystem::path output;
    std::uint32_t width = 960;
    std::uint32_t height = 540;
};

// `quillon chart`: writes the tool's test picture and says where. Gives the exit status.
int RunChart(const ChartOptions& options);

}  // namespace quillon::cli
