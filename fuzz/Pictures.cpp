// A picture file of any form; and the pixels of a sound one, written in each form and read again.
//
// Planted once: a row of an OpenEXR data window that is copied past the frame.

#include <stb/stb_image.h>

#include <algorithm>

#include "Input.h"
#include "cli/diagnostics/ToolError.h"
#include "cli/pictures/PictureFormat.h"
#include "imagelib/ImagePrechecks.h"

using namespace quillon;
using namespace quillon::cli;

namespace {

// Larger ones only take longer.
constexpr std::size_t kMostPixels = 1 << 12;

// A few bytes in some of the old formats are a picture of up to a GiB, black where the file has ended.
bool IsHuge(std::span<const std::byte> file) {
    int width = 0, height = 0, channels = 0;
    return !JpegTablesOverflow(file) &&
           stbi_info_from_memory(reinterpret_cast<const stbi_uc*>(file.data()), static_cast<int>(file.size()), &width,
                                 &height, &channels) != 0 &&
           std::int64_t{width} * height > 1 << 20;
}

void RequireWhole(const Picture& picture) {
    fuzz::Require(
        picture.width > 0 && picture.height > 0 &&
            picture.pixels.size() == std::size_t{picture.width} * picture.height * 4 * SampleBytes(picture.format),
        "a picture has all its pixels");
}

void WriteAndRead(const Picture& hostPicture) {
    const RawLayout layout{hostPicture.width, hostPicture.height, BitDepth(hostPicture.format)};
    const bool isFloat = hostPicture.format == SampleFormat::real;
    const struct {
        std::vector<std::byte> (*write)(const Picture& picture, const StorageOptions& options);
        Picture (*read)(std::span<const std::byte> file, const RawLayout& layout);
        bool isExact;
    } forms[] = {{WritePng, ReadPng, !isFloat},
                 {WriteTiff, ReadTiff, true},
                 {WriteRaw, ReadRaw, true},
                 {WriteExr, ReadExr, false}};
    for (const auto& form : forms) {
        const Picture again = form.read(form.write(hostPicture, {}), layout);
        RequireWhole(again);
        fuzz::Require(again.width == hostPicture.width && again.height == hostPicture.height, "the extent stays");
        if (!form.isExact) continue;
        fuzz::Require(Convert(again, hostPicture.format, ChannelOrder::argb).pixels == hostPicture.pixels,
                      "what is written is read again");
    }
}

void ReadRawOf(std::span<const std::byte> file) {
    if (file.size() < 3) return;
    const auto number = [&](std::size_t at) { return std::to_integer<std::uint32_t>(file[at]); };
    const std::uint32_t depth = 8u << number(0) % 3;
    try {
        RequireWhole(ReadRaw(file.subspan(3), {1 + number(1), 1 + number(2), depth}));
    } catch (const ToolError&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto file = std::as_bytes(std::span(data, size));
    ReadRawOf(file);
    if (IsHuge(file)) return 0;
    Picture picture;
    try {
        picture = DecodePicture(file);
    } catch (const ToolError&) {
        return 0;
    }
    RequireWhole(picture);
    if (std::size_t{picture.width} * picture.height > kMostPixels) return 0;
    WriteAndRead(Convert(picture, HostFormat(BitDepth(picture.format)), ChannelOrder::argb));
    return 0;
}
