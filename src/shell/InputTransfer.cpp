#include "shell/InputTransfer.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "engine/AEQuillon2.h"
#include "shell/HostVersion.h"
#include "shell/Worlds.h"

namespace quillon {

namespace {

// After Effects' worlds are read in place, padded rows and all. A world whose own depth is smaller than the one that is
// asked for holds too few bytes for its width: it is uploaded in its own depth.
void TransferInPlace(PF_InData& in, PF_EffectWorld& world, std::uint32_t bitDepth, std::uint32_t index) {
    const WorldPixels found = PixelsOf(in, world);
    if (!found.pixels) return;
    AEQuillon2::instance().setLayerPixels(index, found.pixels, static_cast<std::uint32_t>(world.width),
                                          static_cast<std::uint32_t>(world.height), std::min(bitDepth, found.bitDepth),
                                          static_cast<std::uint64_t>(std::int64_t{world.rowbytes}));
}

// Premiere Pro's worlds are packed first: the part that the effect works on, no further than the world reaches.
void TransferPacked(PF_InData& in, PF_EffectWorld& world, std::uint32_t bitDepth, std::uint32_t index) {
    const auto* data = reinterpret_cast<const std::byte*>(world.data);
    const std::int64_t left = in.pre_effect_source_origin_x;
    const std::int64_t top = in.pre_effect_source_origin_y;
    if (!data || bitDepth == 0 || left < 0 || top < 0 || left >= world.width || top >= world.height) return;
    const auto width = static_cast<std::uint32_t>(
        std::min<std::int64_t>(ScaleBy(static_cast<std::uint32_t>(in.width), in.downsample_x), world.width - left));
    const auto height = static_cast<std::uint32_t>(
        std::min<std::int64_t>(ScaleBy(static_cast<std::uint32_t>(in.height), in.downsample_y), world.height - top));

    const std::size_t rowBytes = width * PixelBytes(bitDepth);
    std::vector<std::byte> packed(rowBytes * height);
    const std::byte* source = data + top * world.rowbytes + left * static_cast<std::int64_t>(PixelBytes(bitDepth));
    for (std::uint32_t y = 0; y < height; ++y)
        std::memcpy(packed.data() + y * rowBytes, source + std::int64_t{y} * world.rowbytes, rowBytes);
    AEQuillon2::instance().setLayerPixels(index, packed.data(), width, height, bitDepth, rowBytes);
}

}  // namespace

void transferInput(PF_InData& in, PF_EffectWorld& world, std::uint32_t bitDepth, std::uint32_t index) {
    if (IsPremiere(in))
        TransferPacked(in, world, bitDepth, index);
    else
        TransferInPlace(in, world, bitDepth, index);
}

}  // namespace quillon
