#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace quillon::test {

using Bytes = std::vector<std::uint8_t>;

// Joins parts of files.
Bytes Join(std::initializer_list<Bytes> parts);
Bytes Text(const std::string& text);
Bytes Word(unsigned value);       // 16 bits, little-endian
Bytes WordBig(unsigned value);    // 16 bits, big-endian
Bytes Long(std::uint32_t value);  // 32 bits, little-endian

// Whole files of the given pixels: rows tight, top row first, `channels` bytes a pixel.
Bytes PngFile(int width, int height, int channels, const Bytes& pixels);
Bytes JpegFile(int width, int height, int channels, const Bytes& pixels);

// A BMP and a TGA file of 24 bits a pixel; `body` is what follows the header, bottom row first.
Bytes BmpFile(std::uint32_t width, std::uint32_t height, const Bytes& body);
Bytes TgaFile(unsigned width, unsigned height, const Bytes& body);
// A Radiance HDR file; `body` is what follows the header.
Bytes HdrFile(int width, int height, const Bytes& body);

}  // namespace quillon::test
