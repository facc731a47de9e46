#include "gpu/PixelLayout.h"

#include <GL/glew.h>

#include <algorithm>
#include <cstring>
#include <limits>

#include "imagelib/HostRange.h"

namespace quillon {

namespace {

// Bytes of a pixel as GL reads it, which at 15 bits is not what the depth says.
std::size_t PixelBytes(std::uint32_t bitDepth) {
    switch (GLChannelType(bitDepth)) {
        case GL_FLOAT:
            return 16;
        case GL_UNSIGNED_SHORT:
            return 8;
        default:
            return 4;
    }
}

// The bytes of a row that hold pixels: a host can give rows that are shorter than their width.
std::size_t UsedRowBytes(const PixelLayout& layout) {
    const auto distance = static_cast<std::size_t>(layout.rowBytes < 0 ? -layout.rowBytes : layout.rowBytes);
    return std::min(layout.width * PixelBytes(layout.bitDepth), distance);
}

}  // namespace

std::uint32_t GLChannelType(std::uint32_t bitDepth) {
    switch (bitDepth) {
        case 15:
        case 16:
            return GL_UNSIGNED_SHORT;
        case 32:
            return GL_FLOAT;
        default:
            return GL_UNSIGNED_BYTE;
    }
}

std::int32_t UnpackRowLength(const PixelLayout& layout) {
    const std::int64_t channelBytes = layout.bitDepth >> 3;
    if (channelBytes == 0) return 0;
    const std::int64_t pixels = layout.rowBytes / channelBytes / 4;
    return static_cast<std::int32_t>(std::min<std::int64_t>(pixels, std::numeric_limits<std::int32_t>::max()));
}

std::size_t BytesReadByGL(const PixelLayout& layout) {
    if (layout.height == 0 || layout.width == 0) return 0;
    const std::int32_t rowLength = UnpackRowLength(layout);
    const std::size_t rowPixels = rowLength > 0 ? static_cast<std::size_t>(rowLength) : layout.width;
    return ((std::size_t{layout.height} - 1) * rowPixels + layout.width) * PixelBytes(layout.bitDepth);
}

PixelLayout KeptLayout(const PixelLayout& source) {
    PixelLayout kept = source;
    if (source.rowBytes < 0) kept.rowBytes = static_cast<std::int64_t>(source.width * PixelBytes(source.bitDepth));
    return kept;
}

void KeepRows(const std::byte* source, const PixelLayout& layout, bool widen, std::vector<std::byte>& kept) {
    const std::size_t used = UsedRowBytes(layout);
    const auto distance = static_cast<std::size_t>(KeptLayout(layout).rowBytes);
    // What has no bytes may have no memory either.
    if (layout.height == 0 || used == 0) {
        std::fill(kept.begin(), kept.end(), std::byte{});
        return;
    }
    if (!widen && layout.rowBytes >= 0) {
        const std::size_t readable = (layout.height - 1) * distance + used;
        std::memmove(kept.data(), source, readable);
        std::fill(kept.begin() + static_cast<std::ptrdiff_t>(readable), kept.end(), std::byte{});
        return;
    }
    for (std::uint32_t y = 0; y < layout.height; ++y) {
        const std::byte* from = source + y * layout.rowBytes;
        std::byte* to = kept.data() + y * distance;
        if (widen)
            WidenHostRow(from, to, used / sizeof(std::uint16_t));
        else
            std::memcpy(to, from, used);
        std::fill(to + (widen ? used / 2 * 2 : used), to + distance, std::byte{});
    }
}

}  // namespace quillon
