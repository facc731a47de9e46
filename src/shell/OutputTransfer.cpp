#include "shell/OutputTransfer.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "imagelib/HostRange.h"
#include "shell/HostVersion.h"

namespace quillon {

namespace {

// Where a frame goes: its first pixel may be outside of the world on any side.
struct Destination {
    std::byte* pixels;
    std::uint32_t bitDepth;   // that the frame is written in
    std::size_t rowCapacity;  // bytes that a row of the world has for pixels
    std::int64_t left;
    std::int64_t top;
};

void CopyChannels(const std::byte* source, std::byte* destination, std::size_t bytes, std::uint32_t bitDepth) {
    if (bitDepth == 16)
        FoldToHostRow(source, destination, bytes / 2);
    else
        std::memcpy(destination, source, bytes);
}

void WriteRows(const MappedFrame& frame, PF_EffectWorld& world, const Destination& to) {
    const std::size_t pixel = PixelBytes(to.bitDepth);
    if (pixel == 0) return;
    const std::size_t sourceRow = frame.extent.width * pixel;
    const std::size_t sourceBytes = std::size_t{frame.extent.width} * frame.extent.height * PixelBytes(frame.bitDepth);

    const std::int64_t firstColumn = std::max<std::int64_t>(0, -to.left);
    const std::int64_t lastColumn = std::min<std::int64_t>(frame.extent.width, world.width - to.left);
    if (lastColumn <= firstColumn) return;
    for (std::int64_t y = 0; y < frame.extent.height; ++y) {
        const std::int64_t row = to.top + frame.extent.height - 1 - y;
        if (row < 0 || row >= world.height) continue;
        const std::size_t start =
            static_cast<std::size_t>(y) * sourceRow + static_cast<std::size_t>(firstColumn) * pixel;
        if (start >= sourceBytes) return;
        const std::size_t offset = static_cast<std::size_t>(to.left + firstColumn) * pixel;
        if (offset >= to.rowCapacity) return;
        const std::size_t bytes = std::min(
            {static_cast<std::size_t>(lastColumn - firstColumn) * pixel, sourceBytes - start, to.rowCapacity - offset});
        std::byte* destination = to.pixels + row * world.rowbytes + static_cast<std::int64_t>(offset);
        CopyChannels(frame.pixels + start, destination, bytes, to.bitDepth);
    }
}

A_long Centered(A_long outer, std::uint32_t inner) {
    return static_cast<A_long>(static_cast<std::uint32_t>(outer) - inner) >> 1;
}

}  // namespace

void writeOutput(const PF_InData& in, PF_EffectWorld& output, const WorldPixels& found, std::uint32_t worldDepth,
                 const MappedFrame& frame) {
    const auto capacityAt = [&](std::uint32_t bitDepth) {
        return bitDepth != 0 ? static_cast<std::size_t>(std::max<A_long>(output.width, 0)) * PixelBytes(bitDepth)
                             : static_cast<std::size_t>(std::abs(std::int64_t{output.rowbytes}));
    };
    if (IsPremiere(in)) {
        // In the input's depth, whatever the output's is: a row takes what it has room for.
        const Destination to{reinterpret_cast<std::byte*>(output.data), frame.bitDepth, capacityAt(worldDepth),
                             Centered(output.width, frame.extent.width), Centered(output.height, frame.extent.height)};
        if (to.pixels) WriteRows(frame, output, to);
        return;
    }
    if (found.pixels) WriteRows(frame, output, {found.pixels, found.bitDepth, capacityAt(found.bitDepth), 0, 0});
}

}  // namespace quillon
