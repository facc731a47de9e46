#include "frei0r/FramePixels.h"

#include <algorithm>
#include <bit>

#include "engine/IPlugin.h"

namespace quillon::frei0r {

namespace {

static_assert(std::endian::native == std::endian::little, "a pixel's first byte is the lowest of its word");

constexpr int kChannelBits = 8;

}  // namespace

void ToEngineOrder(std::span<const std::uint32_t> from, std::uint32_t* to) {
    std::ranges::transform(from, to, [](std::uint32_t rgba) { return std::rotl(rgba, kChannelBits); });
}

FrameOrigin OriginIn(FrameSize output, FrameSize frame) {
    return {CenteredOrigin(output.width, frame.width), CenteredOrigin(output.height, frame.height)};
}

void WriteFrame(const std::uint32_t* output, FrameSize outputSize, std::uint32_t* frame, FrameSize frameSize) {
    const FrameOrigin origin = OriginIn(outputSize, frameSize);
    const std::int64_t firstColumn = std::max<std::int64_t>(0, -std::int64_t{origin.x});
    const std::int64_t endColumn = std::min<std::int64_t>(frameSize.width, std::int64_t{outputSize.width} - origin.x);
    for (std::int64_t y = 0; y < frameSize.height; ++y) {
        std::uint32_t* const row = frame + y * frameSize.width;
        const std::int64_t outputRow = y + origin.y;
        if (outputRow < 0 || outputRow >= outputSize.height || firstColumn >= endColumn) {
            std::fill_n(row, frameSize.width, 0);
            continue;
        }
        const std::uint32_t* const source = output + (outputSize.height - 1 - outputRow) * outputSize.width + origin.x;
        std::fill_n(row, firstColumn, 0);
        std::transform(source + firstColumn, source + endColumn, row + firstColumn,
                       [](std::uint32_t argb) { return std::rotr(argb, kChannelBits); });
        std::fill(row + endColumn, row + frameSize.width, 0);
    }
}

}  // namespace quillon::frei0r
