#include <fmt/format.h>
#include <libdeflate.h>
#include <lodepng.h>

#include <cstdlib>
#include <cstring>
#include <memory>

#include "cli/diagnostics/ToolError.h"
#include "cli/pictures/PictureFormat.h"

namespace quillon::cli {

namespace {

// PNG's words are big-endian. Turns them over in place.
void SwapWords(std::span<std::byte> bytes) {
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) std::swap(bytes[i], bytes[i + 1]);
}

// As the decoder asks for it: the bytes are its own to free.
unsigned Inflate(unsigned char** out, std::size_t* outSize, const unsigned char* in, std::size_t inSize,
                 const LodePNGDecompressSettings* settings) {
    constexpr auto kEnd = [](libdeflate_decompressor* decompressor) { libdeflate_free_decompressor(decompressor); };
    const std::unique_ptr<libdeflate_decompressor, decltype(kEnd)> decompressor(libdeflate_alloc_decompressor());
    // More than most pictures need; the system gives only the pages that are written.
    auto* const bytes = static_cast<unsigned char*>(std::malloc(settings->max_output_size));
    *out = bytes;
    return decompressor && bytes &&
                   libdeflate_zlib_decompress(decompressor.get(), in, inSize, bytes, settings->max_output_size,
                                              outSize) == LIBDEFLATE_SUCCESS
               ? 0
               : 1;
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
    state.decoder.zlibsettings.custom_zlib = Inflate;
    std::vector<unsigned char> decoded;
    if (const unsigned error = lodepng::decode(decoded, width, height, state, bytes, file.size())) Fail(error);

    Picture picture = Picture::Make(width, height, format, ChannelOrder::rgba);
    std::memcpy(picture.pixels.data(), decoded.data(), std::min(decoded.size(), picture.pixels.size()));
    if (format == SampleFormat::word) SwapWords(picture.pixels);
    return picture;
}

}  // namespace quillon::cli
