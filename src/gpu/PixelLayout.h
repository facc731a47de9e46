#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillon {

// The four numbers that describe the memory of an upload.
struct PixelLayout {
    std::uint32_t width = 0;     // pixels
    std::uint32_t height = 0;    // rows
    std::uint32_t bitDepth = 0;  // bits per channel; four channels a pixel
    std::int64_t rowBytes = 0;   // from one row to the next; negative: each row is below the one before in memory
};

// GL's type of a channel in an upload or read-back at this depth: a float at 32 bits, a word at 15 and 16, else a byte.
std::uint32_t GLChannelType(std::uint32_t bitDepth);

// GL_UNPACK_ROW_LENGTH in pixels, for rowBytes of 0 and more. Integer arithmetic with a surprise that is meant: 15 bits
// count as one byte, which doubles the row length. A depth below 8 gives 0: GL then takes the rows as tight.
std::int32_t UnpackRowLength(const PixelLayout& layout);

// The bytes that GL reads for an upload with that row length, from the first pixel to the last.
std::size_t BytesReadByGL(const PixelLayout& layout);

// The layout that KeepRows gives to rows of this layout: the same, but tight rows for a negative rowBytes.
PixelLayout KeptLayout(const PixelLayout& source);

// Copies the rows at `source`, padding included, to `kept`, in KeptLayout; `kept` already has height * rowBytes bytes
// of that. With `widen`, 16-bit channels go from the host's range to GL's on the way. Padding is zero where the source
// has none to read (after the row that is last in memory), where rows change their distance, where they are widened,
// and where they have no pixels: nothing is read then. Without `widen` and with a rowBytes of 0 or more, `source` may
// be `kept` itself.
void KeepRows(const std::byte* source, const PixelLayout& layout, bool widen, std::vector<std::byte>& kept);

}  // namespace quillon
