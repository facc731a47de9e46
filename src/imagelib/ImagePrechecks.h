#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace quillon {

// Damage in picture files that the decoder itself does not survive. Each of these looks at the bytes before the
// decoder does; bytes that are no picture of the kind at all are no fault here.

// A Huffman table of a JPEG file declares more than 256 codes: the decoder would write past its tables.
bool JpegTablesOverflow(std::span<const std::byte> file);

// The scanlines of a Radiance HDR file end before they have described `width` by `height` pixels: the decoder would
// wait for the rest without end. Needs a file whose header the decoder has read.
bool RadianceIsCutShort(std::span<const std::byte> file, std::uint32_t width, std::uint32_t height);

}  // namespace quillon
