#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillon::bench {

// The picture that is rendered: tight rows, four channels of this depth.
struct FrameSize {
    std::uint32_t width;
    std::uint32_t height;
    std::uint32_t bitDepth;

    std::size_t rowBytes() const { return std::size_t{width} * bitDepth / 2; }
    std::size_t bytes() const { return rowBytes() * height; }
};

// The floor: the GL calls that a frame of an identity effect cannot do without, written by hand. Upload, one pass,
// read-back through a pixel pack buffer, and a copy with the rows turned over; at 16 bits with plain loops for the
// host's channel range. All GL objects and buffers are made once. A GL context is current throughout.
class BareFrame {
public:
    explicit BareFrame(FrameSize size);
    ~BareFrame();
    BareFrame(const BareFrame&) = delete;
    BareFrame& operator=(const BareFrame&) = delete;

    void render(const std::byte* input, std::byte* output);

private:
    FrameSize size;
    std::vector<std::uint16_t> widened;
    std::uint32_t inputTexture = 0;
    std::uint32_t outputTexture = 0;
    std::uint32_t framebuffer = 0;
    std::uint32_t program = 0;
    std::uint32_t packBuffer = 0;
};

}  // namespace quillon::bench
