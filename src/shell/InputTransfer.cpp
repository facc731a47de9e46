#include "shell/InputTransfer.h"

#include <algorithm>
#include <cstring>

#include "shell/HostVersion.h"

namespace quillon {

LayerPixels::LayerPixels(const WorldPixels& found, const PF_EffectWorld& world, std::uint32_t depth)
    : pixels(found.pixels),
      width(static_cast<std::uint32_t>(world.width)),
      height(static_cast<std::uint32_t>(world.height)),
      bitDepth(std::min(depth, found.bitDepth)),
      rowBytes(world.rowbytes) {}

LayerPixels::LayerPixels(const PF_InData& in, const PF_EffectWorld& world, std::uint32_t depth) : bitDepth(depth) {
    const auto* data = reinterpret_cast<const std::byte*>(world.data);
    const std::int64_t left = in.pre_effect_source_origin_x;
    const std::int64_t top = in.pre_effect_source_origin_y;
    if (!data || depth == 0 || left < 0 || top < 0 || left >= world.width || top >= world.height) return;
    width = static_cast<std::uint32_t>(
        std::min<std::int64_t>(ScaleBy(static_cast<std::uint32_t>(in.width), in.downsample_x), world.width - left));
    height = static_cast<std::uint32_t>(
        std::min<std::int64_t>(ScaleBy(static_cast<std::uint32_t>(in.height), in.downsample_y), world.height - top));
    if (width == 0 || height == 0) return;

    const std::size_t packedRow = width * PixelBytes(depth);
    packed.resize(packedRow * height);
    const std::byte* source = data + top * world.rowbytes + left * static_cast<std::int64_t>(PixelBytes(depth));
    for (std::uint32_t y = 0; y < height; ++y)
        std::memcpy(packed.data() + y * packedRow, source + std::int64_t{y} * world.rowbytes, packedRow);
    pixels = packed.data();
    rowBytes = static_cast<std::int64_t>(packedRow);
}

void LayerPixels::upload(const EngineTurn& turn, std::uint32_t index) const {
    turn->setLayerPixels(index, pixels, width, height, bitDepth, static_cast<std::uint64_t>(rowBytes));
}

LayerPixels InputPixels(const PF_InData& in, const WorldPixels& found, const PF_EffectWorld& world,
                        std::uint32_t bitDepth) {
    return IsPremiere(in) ? LayerPixels(in, world, bitDepth) : LayerPixels(found, world, bitDepth);
}

void transferInput(const EngineTurn& turn, const LayerPixels& input, std::uint32_t index) {
    if (input) input.upload(turn, index);
}

}  // namespace quillon
