#include <fmt/format.h>
#include <lodepng.h>

#include <cstring>

#include "cli/diagnostics/ToolError.h"
#include "cli/pictures/PictureFormat.h"

namespace quillon::cli {

namespace {

// PNG's words are big-endian. Turns them over in place, in either direction.
void SwapWords(std::span<std::byte> bytes) {
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) std::swap(bytes[i], bytes[i + 1]);
}

[[noreturn]] void Fail(unsigned error) {
    throw Fault("", lodepng_error_text(error), "the PNG file is damaged or cut off");
}

}  // namespace

// Color profiles and gamma are passed over: the numbers count.
Picture ReadPng(std::span<const std::byte> file, const RawLayout&) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(file.data());
    lodepng::State state;
    unsigned width = 0;
    unsigned height = 0;
    if (const unsigned error = lodepng_inspect(&width, &height, &state, bytes, file.size())) Fail(error);
    const SampleFormat format = state.info_png.color.bitdepth == 16 ? SampleFormat::word : SampleFormat::byte;
    const std::uint64_t size = std::uint64_t{width} * height * 4 * SampleBytes(format);
    if (size > kMaximumPictureBytes)
        throw Fault("", fmt::format("{} by {} pixels are too many", width, height), "make it smaller");

    state.info_raw.colortype = LCT_RGBA;
    state.info_raw.bitdepth = BitDepth(format);
    state.decoder.read_text_chunks = 0;
    // Whatever the compressed stream says, a picture has not more than its pixels and one byte a row and pass.
    state.decoder.zlibsettings.max_output_size = size + std::size_t{height} * 8 + 64;
    std::vector<unsigned char> decoded;
    if (const unsigned error = lodepng::decode(decoded, width, height, state, bytes, file.size())) Fail(error);

    Picture picture = Picture::Make(width, height, format, ChannelOrder::rgba);
    std::memcpy(picture.pixels.data(), decoded.data(), std::min(decoded.size(), picture.pixels.size()));
    if (format == SampleFormat::word) SwapWords(picture.pixels);
    return picture;
}

// 8 bits as 8; 16 bits, and floats cut to 0 to 1, as 16.
std::vector<std::byte> WritePng(const Picture& picture) {
    const SampleFormat format = BitDepth(picture.format) == 8 ? SampleFormat::byte : SampleFormat::word;
    Picture stored = Convert(picture, format, ChannelOrder::rgba);
    if (format == SampleFormat::word) SwapWords(stored.pixels);
    std::vector<unsigned char> file;
    const unsigned error = lodepng::encode(file, reinterpret_cast<const unsigned char*>(stored.pixels.data()),
                                           stored.width, stored.height, LCT_RGBA, BitDepth(format));
    if (error != 0) throw Fault("", lodepng_error_text(error));
    const auto* first = reinterpret_cast<const std::byte*>(file.data());
    return {first, first + file.size()};
}

}  // namespace quillon::cli
