#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "hostapi/HostApi.h"
#include "shell/EngineTurn.h"
#include "shell/Worlds.h"

namespace quillon {

// A picture on its way to the engine: a view of the host's memory, or rows that were packed from it. Made before the
// engine's turn and uploaded in it. False without pixels.
class LayerPixels {
public:
    LayerPixels() = default;
    // The world is read in place, with the padding of its rows. A world that is less deep than `bitDepth` has too few
    // bytes for that depth, and is read in its own.
    LayerPixels(const WorldPixels& found, const PF_EffectWorld& world, std::uint32_t bitDepth);
    // The part of Premiere Pro's world that the effect works on, packed, as far as the world reaches.
    LayerPixels(const PF_InData& in, const PF_EffectWorld& world, std::uint32_t bitDepth);
    LayerPixels(LayerPixels&&) = default;
    LayerPixels& operator=(LayerPixels&&) = default;

    explicit operator bool() const { return pixels != nullptr; }  // whether there are pixels to upload

    // Into the layer of this declaration index, or kInputLayer. Needs the GL lock.
    void upload(const EngineTurn& turn, std::uint32_t index) const;

private:
    const std::byte* pixels = nullptr;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t bitDepth = 0;
    std::int64_t rowBytes = 0;
    std::vector<std::byte> packed;
};

// The picture in a host's world as the effect's input. `found` holds the pixels that After Effects gives for the world;
// Premiere Pro's world is read directly. With `bitDepth` 0 nothing is uploaded that could be drawn.
LayerPixels InputPixels(const PF_InData& in, const WorldPixels& found, const PF_EffectWorld& world,
                        std::uint32_t bitDepth);

// Uploads it as the effect's input, or, for an index below kInputLayer, as a frame before it. Needs the GL lock.
void transferInput(const EngineTurn& turn, const LayerPixels& input, std::uint32_t index);

}  // namespace quillon
