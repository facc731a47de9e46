#pragma once

#include <cstddef>
#include <cstdint>

namespace quillon {

// Between the host's 16-bit channel, 0 to 32768, and GL's, 0 to 65535. Every host value survives the way there and
// back but 16385, which comes back as 16384.

// Host to GL, one channel: above 16384 one less before doubling, in 16 bits. 32768 gives 65534.
constexpr std::uint16_t WidenHostChannel(std::uint16_t value) {
    return static_cast<std::uint16_t>((value > 16384 ? value - 1 : value) * 2);
}

// GL to host, one channel. 65535 and 65534 give 32768, 32768 gives 16384.
constexpr std::uint16_t FoldToHostChannel(std::uint16_t value) {
    return static_cast<std::uint16_t>((value >> 1) + (value > 32768 ? 1 : 0));
}

// The same for a row of `channels` words, with the widest vectors of the baseline processor; equal to the plain rule,
// value for value. Source and destination may be the same memory, but not overlap otherwise. Any alignment.
void WidenHostRow(const std::byte* source, std::byte* destination, std::size_t channels);
void FoldToHostRow(const std::byte* source, std::byte* destination, std::size_t channels);

}  // namespace quillon
