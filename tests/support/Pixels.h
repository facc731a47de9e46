#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

namespace quillon::test {

// Pictures of tests are tight rows of four channels, A, R, G, B, top row first, in the host's range.
using Bytes = std::vector<std::byte>;

template <class Channel>
Bytes BytesOf(const std::vector<Channel>& channels) {
    Bytes bytes(channels.size() * sizeof(Channel));
    if (!bytes.empty()) std::memcpy(bytes.data(), channels.data(), bytes.size());
    return bytes;
}

template <class Channel>
std::vector<Channel> ChannelsOf(std::span<const std::byte> bytes) {
    std::vector<Channel> channels(bytes.size() / sizeof(Channel));
    if (!channels.empty()) std::memcpy(channels.data(), bytes.data(), channels.size() * sizeof(Channel));
    return channels;
}

Bytes ReversedRows(std::span<const std::byte> bytes, std::size_t height);

// A picture whose channels all differ from each other, so that no exchange of rows, columns or channels goes unseen.
// At most 60 channels.
Bytes DistinctPicture(std::uint32_t width, std::uint32_t height, std::uint32_t bitDepth);

// What the host gets of a mapped frame, except that the rows stay as they are: at 16 bits the channels are folded.
Bytes InHostRange(const Bytes& mapped, std::uint32_t bitDepth);

}  // namespace quillon::test
