#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "imagelib/PixelBuffer.h"

namespace quillon {

// The script's handle on a picture in CPU memory. It knows its pixel type only as a number of bits per channel.
// The pixels are `borrowedPixels` when that is set, else `pixels`; a surface without either is empty.
class Surface {
public:
    // The kind's factory, in entities/Factories.h.
    class Factory;

    Surface() = default;
    virtual ~Surface() = default;
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;

    // Stores the extent, with tight rows of four channels, and allocates nothing. Always true.
    virtual bool init(std::uint32_t columns, std::uint32_t rows, std::uint32_t bits, bool argbOrdered);

    // First byte of the pixels; null for an empty surface.
    std::byte* pixelAddress();
    // Bytes that are there from pixelAddress() on. They may be fewer than the extent asks for: a texture that lost its
    // picture to an empty one of another size still has the copy of the old.
    std::size_t byteSize() const;

    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint64_t rowBytes = 0;
    std::uint32_t bitDepth = 0;     // 8, 15, 16 or 32
    bool isArgbOrdered = false;     // every path sets it; nothing reads it
    std::vector<std::byte> pixels;  // owned
    PixelBuffer borrowedPixels;     // a texture's copy, shared with it
};

}  // namespace quillon
