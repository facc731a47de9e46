#include "cli/sequence/FramePipeline.h"

#include <fmt/format.h>

#include <algorithm>

namespace quillon::cli {

std::size_t FramesInFlight(std::uint64_t frameBytes, unsigned threads, unsigned processes) {
    constexpr std::uint64_t kMostBytes = std::uint64_t{1} << 29;
    return static_cast<std::size_t>(
        std::clamp<std::uint64_t>(kMostBytes / processes / std::max<std::uint64_t>(frameBytes, 1), 1, threads));
}

void RethrowForFrame(ToolError& error, std::int32_t frame) {
    error.faults.push_back({.text = fmt::format("stopped at frame {}", frame), .kind = Diagnostic::Kind::tool});
    throw error;
}

}  // namespace quillon::cli
