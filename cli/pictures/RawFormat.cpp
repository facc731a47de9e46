#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cstring>

#include "cli/diagnostics/ToolError.h"
#include "cli/pictures/PictureFormat.h"

// The host's own buffer as a file: tight rows, the top row first; a pixel is A, R, G, B; a channel is one byte, a
// word 0 to 32768 or a float, little-endian; no header. The exact form, for scripts and tests.

namespace quillon::cli {

static_assert(std::endian::native == std::endian::little, "raw buffers are copied as they lie in memory");

Picture ReadRaw(std::span<const std::byte> file, const RawLayout& layout) {
    const std::uint64_t size = std::uint64_t{layout.width} * layout.height * layout.bitDepth / 2;
    if (size != file.size()) {
        throw Fault("",
                    fmt::format("it has {} bytes, {}x{} at {} bits per channel are {}", file.size(), layout.width,
                                layout.height, layout.bitDepth, size),
                    "correct --size or --depth");
    }
    Picture picture = Picture::Make(layout.width, layout.height, HostFormat(layout.bitDepth), ChannelOrder::argb);
    std::memcpy(picture.pixels.data(), file.data(), file.size());
    if (picture.format == SampleFormat::hostWord) {
        const auto* words = picture.row<std::uint16_t>(0);
        const auto* end = words + picture.pixels.size() / 2;
        if (const auto* above = std::find_if(words, end, [](std::uint16_t word) { return word > 32768; });
            above != end) {
            throw Fault("", fmt::format("channel {} is {}", above - words, *above),
                        "a host's 16-bit channels run from 0 to 32768");
        }
    }
    return picture;
}

std::vector<std::byte> WriteRaw(const Picture& picture, const StorageOptions&) {
    return Convert(picture, HostFormat(BitDepth(picture.format)), ChannelOrder::argb).pixels;
}

}  // namespace quillon::cli
