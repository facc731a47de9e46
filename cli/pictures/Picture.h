#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillon::cli {

// How one channel is stored, and what number full scale is.
enum class SampleFormat {
    byte,      // 0 to 255
    word,      // 0 to 65535: 16 bits in a file
    hostWord,  // 0 to 32768: 16 bits as a host has them
    real,      // 32-bit float, 1.0 is full scale, not clamped
};

enum class ChannelOrder { rgba, argb };

// A picture in memory: rows tight, the first row on top, four channels in this order, alpha straight. The numbers of
// the channels are as the file or the host gives them: color spaces are the artist's matter, and nothing here
// linearises an sRGB file or encodes a linear one.
struct Picture {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    SampleFormat format = SampleFormat::byte;
    ChannelOrder order = ChannelOrder::rgba;
    std::vector<std::byte> pixels;

    // No pixels yet, zeroed. Throws std::bad_alloc.
    static Picture Make(std::uint32_t width, std::uint32_t height, SampleFormat format, ChannelOrder order);

    std::size_t rowBytes() const;
    template <class T>
    T* row(std::uint32_t y) {
        return reinterpret_cast<T*>(pixels.data() + y * rowBytes());
    }
    template <class T>
    const T* row(std::uint32_t y) const {
        return reinterpret_cast<const T*>(pixels.data() + y * rowBytes());
    }
};

// Bytes of one channel, and bits per channel as a host counts them: 8, 16 or 32.
std::size_t SampleBytes(SampleFormat format);
std::uint32_t BitDepth(SampleFormat format);

// The format of a host's buffers at 8, 16 or 32 bits per channel.
SampleFormat HostFormat(std::uint32_t bitDepth);

// One row in another form, into memory for as many pixels. Full scale goes to full scale and values are rounded to the
// nearest, halves upwards; formats with an end of scale cut what is outside, NaN to 0. The same format keeps every
// channel as it is.
void ConvertRow(const Picture& picture, std::uint32_t y, SampleFormat format, ChannelOrder order, std::byte* row);

// All rows.
Picture Convert(const Picture& picture, SampleFormat format, ChannelOrder order);

// Divides colors that were multiplied by alpha, in the order rgba and a file's form; whole numbers end at full scale.
// Color without alpha is light that nothing covers, and stays.
void Unpremultiply(Picture& picture);

}  // namespace quillon::cli
