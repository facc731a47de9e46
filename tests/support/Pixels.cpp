#include "support/Pixels.h"

namespace quillon::test {

namespace {

template <class Channel>
Bytes Ramp(std::size_t channels, Channel first, Channel step) {
    std::vector<Channel> values(channels);
    for (std::size_t i = 0; i < channels; ++i) values[i] = static_cast<Channel>(first + step * static_cast<Channel>(i));
    return BytesOf(values);
}

}  // namespace

Bytes ReversedRows(std::span<const std::byte> bytes, std::size_t height) {
    Bytes result;
    const std::size_t rowBytes = bytes.size() / height;
    for (std::size_t row = height; row-- > 0;) {
        const auto source = bytes.subspan(row * rowBytes, rowBytes);
        result.insert(result.end(), source.begin(), source.end());
    }
    return result;
}

Bytes DistinctPicture(std::uint32_t width, std::uint32_t height, std::uint32_t bitDepth) {
    const std::size_t channels = std::size_t{4} * width * height;
    if (bitDepth == 8) return Ramp<std::uint8_t>(channels, 9, 4);
    if (bitDepth == 16) return Ramp<std::uint16_t>(channels, 301, 547);
    return Ramp<float>(channels, -1.25f, 0.125f);
}

Bytes InHostRange(const Bytes& mapped, std::uint32_t bitDepth) {
    if (bitDepth != 16) return mapped;
    std::vector<std::uint16_t> channels = ChannelsOf<std::uint16_t>(mapped);
    for (std::uint16_t& v : channels) v = static_cast<std::uint16_t>((v >> 1) + (v > 32768 ? 1 : 0));
    return BytesOf(channels);
}

}  // namespace quillon::test
