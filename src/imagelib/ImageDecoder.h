#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace quillon {

// A decoded picture: four channels in the order red, green, blue, alpha, rows tight and top first.
struct DecodedImage {
    struct Free {
        void operator()(void* pixels) const;
    };

    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t bitDepth = 0;          // 8, or 32 for a Radiance HDR file: floats, not clamped
    std::unique_ptr<void, Free> pixels;  // null when the bytes are no picture that can be read

    explicit operator bool() const { return pixels != nullptr; }  // whether there is a picture
};

// Decodes JPEG, PNG, BMP, GIF, PSD, Radiance HDR or TGA from memory. Bytes of another form, damaged ones, and those
// that claim more than 1 GiB of pixels give no picture, though width and height may have been found.
DecodedImage DecodeImage(std::span<const std::byte> file);

}  // namespace quillon
