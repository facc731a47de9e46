#include "imagelib/ImageDecoder.h"

#include <stb/stb_image.h>

#include <climits>

#include "imagelib/ImagePrechecks.h"

namespace quillon {

namespace {

constexpr int kChannels = 4;
constexpr std::uint64_t kMostPixelBytes = std::uint64_t{1} << 30;

}  // namespace

void DecodedImage::Free::operator()(void* block) const {
    stbi_image_free(block);
}

DecodedImage DecodeImage(std::span<const std::byte> file) {
    DecodedImage image;
    if (file.empty() || file.size() > INT_MAX) return image;
    const auto* bytes = reinterpret_cast<const stbi_uc*>(file.data());
    const int length = static_cast<int>(file.size());

    if (JpegTablesOverflow(file)) return image;  // before any look at it: the header is read with its tables

    const bool isRadiance = stbi_is_hdr_from_memory(bytes, length) != 0;
    image.bitDepth = isRadiance ? 32 : 8;

    int width = 0;
    int height = 0;
    int channels = 0;
    if (!stbi_info_from_memory(bytes, length, &width, &height, &channels)) return image;
    if (width < 1 || height < 1) return image;
    image.width = static_cast<std::uint32_t>(width);
    image.height = static_cast<std::uint32_t>(height);
    const std::uint64_t pixelBytes = std::uint64_t{kChannels} * image.bitDepth / CHAR_BIT;
    if (std::uint64_t{image.width} * image.height > kMostPixelBytes / pixelBytes) return image;

    if (isRadiance) {
        if (RadianceIsCutShort(file, image.width, image.height)) return image;
        image.pixels.reset(stbi_loadf_from_memory(bytes, length, &width, &height, &channels, kChannels));
    } else {
        image.pixels.reset(stbi_load_from_memory(bytes, length, &width, &height, &channels, kChannels));
    }
    return image;
}

}  // namespace quillon
