#include "frei0r/FramePixels.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "engine/IPlugin.h"

namespace quillon::frei0r {

namespace {

static_assert(std::endian::native == std::endian::little, "a pixel's first byte is the lowest of its word");

// A cache line of pixels. Compilers turn operations on it into those of the processor's vectors, also where they would
// not do so for a loop over pixels.
using PixelLine __attribute__((vector_size(64))) = std::uint32_t;
constexpr std::int64_t kLinePixels = sizeof(PixelLine) / sizeof(std::uint32_t);

// Moves the channels of each pixel up by this many bytes in memory, the last ones to the front. `next` is where the
// caller will read after these pixels.
template <int Bytes>
void MoveChannels(const std::uint32_t* from, std::int64_t count, std::uint32_t* to, const std::uint32_t* next) {
    constexpr int kBits = Bytes * 8;
    std::int64_t x = 0;
    for (; x + kLinePixels <= count; x += kLinePixels) {
        __builtin_prefetch(next + x);
        PixelLine line;
        std::memcpy(&line, from + x, sizeof line);
        line = line << kBits | line >> (32 - kBits);
        std::memcpy(to + x, &line, sizeof line);
    }
    for (; x < count; ++x) to[x] = std::rotl(from[x], kBits);
}

}  // namespace

void ToEngineOrder(std::span<const std::uint32_t> from, std::uint32_t* to) {
    MoveChannels<1>(from.data(), static_cast<std::int64_t>(from.size()), to, from.data());
}

FrameOrigin OriginIn(FrameSize output, FrameSize frame) {
    return {CenteredOrigin(output.width, frame.width), CenteredOrigin(output.height, frame.height)};
}

void WriteFrame(const std::uint32_t* output, FrameSize outputSize, std::uint32_t* frame, FrameSize frameSize,
                RowRange rows) {
    const FrameOrigin origin = OriginIn(outputSize, frameSize);
    const std::int64_t firstColumn = std::max<std::int64_t>(0, -std::int64_t{origin.x});
    const std::int64_t endColumn = std::min<std::int64_t>(frameSize.width, std::int64_t{outputSize.width} - origin.x);
    for (std::int64_t y = rows.first; y < rows.end; ++y) {
        std::uint32_t* const row = frame + y * frameSize.width;
        const std::int64_t outputRow = y + origin.y;
        if (outputRow < 0 || outputRow >= outputSize.height || firstColumn >= endColumn) {
            std::fill_n(row, frameSize.width, 0);
            continue;
        }
        const std::int64_t rowsBelow = outputSize.height - 1 - outputRow;
        const std::uint32_t* const source = output + rowsBelow * outputSize.width + origin.x + firstColumn;
        // Rows are read from the last to the first, which processors do not fetch ahead by themselves.
        const std::uint32_t* const next = rowsBelow > 0 ? source - outputSize.width : source;
        std::fill_n(row, firstColumn, 0);
        MoveChannels<3>(source, endColumn - firstColumn, row + firstColumn, next);
        std::fill(row + endColumn, row + frameSize.width, 0);
    }
}

}  // namespace quillon::frei0r
