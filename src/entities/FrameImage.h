#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillon {

// How the engine hands a frame's size and pixels to a Sequence.
struct FrameImage {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint64_t stride = 0;        // bytes per row
    std::uint32_t bits = 0;          // bits per channel
    const void* pixels = nullptr;    // not owned; may be null
    std::vector<std::byte> storage;  // goes before `pixels` unless it is empty
};

}  // namespace quillon
