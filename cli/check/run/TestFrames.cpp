#include "cli/check/run/TestFrames.h"

#include <fmt/format.h>

#include <functional>
#include <string_view>
#include <vector>

#include "cli/effect/FrameTime.h"
#include "cli/pictures/Chart.h"

namespace quillon::cli {

namespace {

constexpr double kFramesPerSecond = 25;

}  // namespace

host::HostSettings TestHost() {
    host::HostSettings settings;
    settings.compWidth = static_cast<A_long>(kTestExtent.width);
    settings.compHeight = static_cast<A_long>(kTestExtent.height);
    settings.keepsRecords = false;
    return settings;
}

FrameTime TestTime(std::int32_t frame) {
    return TimeOfFrame(frame, kFramesPerSecond);
}

FrameInput TestFrame(std::uint32_t bitDepth, std::int32_t frame, PictureExtent extent, std::uint32_t n) {
    FrameInput input;
    input.time = TestTime(frame);
    input.picture = WorldOf(DrawChart(extent.width, extent.height), bitDepth, n);
    input.fullExtent = extent;
    return input;
}

void GiveLayers(const LoadedEffect& effect, FrameInput& input, PictureExtent extent, std::uint32_t n) {
    for (const Control& control : effect.controls())
        if (control.declared.kind == LAYER)
            input.layers.emplace_back(&control, WorldOf(DrawChart(extent.width, extent.height),
                                                        static_cast<std::uint32_t>(input.picture->bitDepth()), n));
}

std::uint64_t DigestOf(const host::World& frame) {
    const std::vector<std::byte> pixels = frame.tightBytes();
    return std::hash<std::string_view>()({reinterpret_cast<const char*>(pixels.data()), pixels.size()});
}

std::string WordsOfDepth(std::uint32_t bitDepth) {
    return fmt::format("at {} bits", bitDepth);
}

}  // namespace quillon::cli
