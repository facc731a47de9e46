#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "hostapi/HostApi.h"

namespace quillon::host {

// A picture in the host's memory: rows from the top, padded, pixels A, R, G, B at 8, 16 (0 to 32768) or 32 (float) bits
// a channel. Padding and a strip before and after the rows hold guard bytes that nobody may change. Fresh pixels
// consist of kUnwrittenByte, which shows what an effect did not write.
//
// Several threads may use different worlds, or read the same one.
class World {
public:
    static constexpr std::byte kUnwrittenByte{0xA5};

    // Extents in pixels, 0 or more; 8, 16 or 32 bits. Throws std::invalid_argument for anything else.
    World(A_long width, A_long height, int bitDepth, int rowPaddingPixels = 3);
    // In memory of the caller, which outlives it: where the top row starts, and the bytes from one row to the next,
    // negative where the rows go up. Only the bytes between two rows are guards here.
    World(A_long width, A_long height, int bitDepth, std::byte* topRow, std::ptrdiff_t bytesToNextRow);
    ~World();
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    // In pixels, in bits a channel, and in bytes; rowBytes is the distance between rows.
    A_long width() const { return widthPixels; }
    A_long height() const { return heightPixels; }
    int bitDepth() const { return depth; }
    std::size_t pixelBytes() const { return static_cast<std::size_t>(depth) / 2; }
    std::ptrdiff_t rowBytes() const { return strideBytes; }

    // The pixels of a row without its padding.
    std::span<std::byte> row(A_long y);
    std::span<const std::byte> row(A_long y) const;

    // All rows without padding, the top one first, and how many bytes that is.
    std::size_t tightSize() const { return usedRowBytes * static_cast<std::size_t>(heightPixels); }
    std::vector<std::byte> tightBytes() const;
    // The same into memory of the caller, of tightSize().
    void copyTo(std::span<std::byte> tight) const;
    // The reverse; the length must be tightSize().
    void write(std::span<const std::byte> tight);

    // Part of it as a separate world: pixels outside of this one are 0.
    std::shared_ptr<World> cut(const PF_LRect& area, int rowPaddingPixels) const;

    // As an effect gets it. Valid until the world ends.
    PF_EffectWorld record() const;

    // Whether all guard bytes are as they were made.
    bool areGuardsIntact() const;

    // The depth of the living world with these pixels; 0 when no world has them. An effect hands copies of records
    // around, so a world is known only by its pixels.
    static int DepthOf(const void* pixels);

    // What a world of this kind takes with its guards.
    static std::size_t BytesNeeded(A_long width, A_long height, int bitDepth, int rowPaddingPixels);

    PF_RationalScale pixelAspect{1, 1};
    PF_Point origin{};  // the input layer's top left corner, as seen from this world's own

private:
    std::byte* rowStart(A_long y) const { return topRowStart + y * strideBytes; }
    std::span<std::byte> paddingAfter(A_long y) const;
    void begin();

    A_long widthPixels;
    A_long heightPixels;
    int depth;
    std::ptrdiff_t strideBytes;
    std::size_t usedRowBytes;
    std::unique_ptr<std::byte[]> memory;  // null where it is the caller's
    std::byte* topRowStart = nullptr;
};

}  // namespace quillon::host
