#include "PictureFiles.h"

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#define STBI_WRITE_NO_STDIO
#include <stb/stb_image_write.h>

namespace quillon::test {

namespace {

void Append(void* file, void* data, int size) {
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    static_cast<Bytes*>(file)->insert(static_cast<Bytes*>(file)->end(), bytes, bytes + size);
}

}  // namespace

Bytes Join(std::initializer_list<Bytes> parts) {
    Bytes all;
    for (const Bytes& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

Bytes Text(const std::string& text) {
    return Bytes(text.begin(), text.end());
}

Bytes Word(unsigned value) {
    return {static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8)};
}

Bytes WordBig(unsigned value) {
    return {static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)};
}

Bytes Long(std::uint32_t value) {
    return Join({Word(value & 0xFFFF), Word(value >> 16)});
}

Bytes PngFile(int width, int height, int channels, const Bytes& pixels) {
    Bytes file;
    stbi_write_png_to_func(Append, &file, width, height, channels, pixels.data(), width * channels);
    return file;
}

Bytes JpegFile(int width, int height, int channels, const Bytes& pixels) {
    Bytes file;
    stbi_write_jpg_to_func(Append, &file, width, height, channels, pixels.data(), 95);
    return file;
}

Bytes BmpFile(std::uint32_t width, std::uint32_t height, const Bytes& body) {
    constexpr std::uint32_t kHeader = 54;
    return Join({Text("BM"), Long(kHeader + static_cast<std::uint32_t>(body.size())), Long(0), Long(kHeader), Long(40),
                 Long(width), Long(height), Word(1), Word(24), Bytes(24), body});
}

Bytes TgaFile(unsigned width, unsigned height, const Bytes& body) {
    return Join({{0, 0, 2}, Bytes(9), Word(width), Word(height), {24, 0}, body});
}

Bytes HdrFile(int width, int height, const Bytes& body) {
    const std::string extent = "-Y " + std::to_string(height) + " +X " + std::to_string(width) + "\n";
    return Join({Text("#?RADIANCE\n# a comment\nFORMAT=32-bit_rle_rgbe\n\n" + extent), body});
}

}  // namespace quillon::test
