#include "cli/pictures/StreamFormats.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <string_view>

namespace quillon::cli {

namespace {

// Color samples are mixed as they are, as most programs do, in the space in which they are stored.
template <class Sample>
void PlaceSamplesOver(Picture& picture, const Background& background, float fullScale) {
    const float under[] = {background.red, background.green, background.blue};
    auto* pixel = picture.row<Sample>(0);
    for (std::size_t i = 0; i < std::size_t{picture.width} * picture.height; ++i, pixel += 4) {
        const float alpha = std::clamp(static_cast<float>(pixel[0]) / fullScale, 0.0f, 1.0f);
        pixel[0] = static_cast<Sample>(fullScale);
        if (alpha == 1) continue;
        for (int c = 0; c < 3; ++c) {
            const float mixed = static_cast<float>(pixel[c + 1]) * alpha + under[c] * fullScale * (1 - alpha);
            pixel[c + 1] = fullScale == 1 ? static_cast<Sample>(mixed) : static_cast<Sample>(mixed + 0.5f);
        }
    }
}

// Appends Y', Cb and Cr planes, one after the other.
template <class Sample>
void AppendPlanes(std::vector<std::byte>& bytes, const Picture& rgba, float fullScale) {
    constexpr float kRed = 0.2126f, kGreen = 0.7152f, kBlue = 0.0722f;
    // At 8 bits luma is 16 to 235 and chroma 16 to 240; at 16 bits 256 times as much.
    const float unit = fullScale == 255 ? 1 : 256;
    const std::size_t pixels = std::size_t{rgba.width} * rgba.height;
    const std::size_t start = bytes.size();  // even: the marker of a frame has six letters
    bytes.resize(start + 3 * pixels * sizeof(Sample));
    auto* const luma = reinterpret_cast<Sample*>(bytes.data() + start);
    const auto* pixel = rgba.row<Sample>(0);
    const auto rounded = [](float value) { return static_cast<Sample>(value + 0.5f); };
    for (std::size_t i = 0; i < pixels; ++i, pixel += 4) {
        const float red = pixel[0] / fullScale, green = pixel[1] / fullScale, blue = pixel[2] / fullScale;
        const float y = kRed * red + kGreen * green + kBlue * blue;
        luma[i] = rounded(unit * (16 + 219 * y));
        luma[i + pixels] = rounded(unit * (128 + 224 * (blue - y) / (2 * (1 - kBlue))));
        luma[i + 2 * pixels] = rounded(unit * (128 + 224 * (red - y) / (2 * (1 - kRed))));
    }
}

}  // namespace

void PlaceOver(Picture& picture, const Background& background) {
    if (picture.format == SampleFormat::byte) PlaceSamplesOver<std::uint8_t>(picture, background, 255);
    if (picture.format == SampleFormat::hostWord) PlaceSamplesOver<std::uint16_t>(picture, background, 32768);
    if (picture.format == SampleFormat::real) PlaceSamplesOver<float>(picture, background, 1);
}

std::vector<std::byte> RgbaFrame(const Picture& picture) {
    const SampleFormat format = picture.format == SampleFormat::byte ? SampleFormat::byte : SampleFormat::word;
    return Convert(picture, format, ChannelOrder::rgba).pixels;
}

std::string Y4mHeader(std::uint32_t width, std::uint32_t height, std::uint32_t bitDepth, std::int64_t rateNumerator,
                      std::int64_t rateDenominator) {
    return fmt::format("YUV4MPEG2 W{} H{} F{}:{} Ip A1:1 C444{} XCOLORRANGE=LIMITED\n", width, height, rateNumerator,
                       rateDenominator, bitDepth == 8 ? "" : "p16");
}

std::vector<std::byte> Y4mFrame(const Picture& picture, const Background& background) {
    Picture opaque = picture;
    PlaceOver(opaque, background);
    const bool isByte = picture.format == SampleFormat::byte;
    const Picture rgba = Convert(opaque, isByte ? SampleFormat::byte : SampleFormat::word, ChannelOrder::rgba);
    constexpr std::string_view kMarker = "FRAME\n";
    std::vector<std::byte> frame;
    frame.reserve(kMarker.size() + 3 * SampleBytes(rgba.format) * rgba.width * rgba.height);
    for (const char c : kMarker) frame.push_back(static_cast<std::byte>(c));
    isByte ? AppendPlanes<std::uint8_t>(frame, rgba, 255) : AppendPlanes<std::uint16_t>(frame, rgba, 65535);
    return frame;
}

}  // namespace quillon::cli
