#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "parameter/ParametersHolder.h"

namespace quillon {

class Context;

// How the engine hands a frame's size and pixels to a Sequence.
struct FrameImage {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint64_t stride = 0;        // bytes per row
    std::uint32_t bits = 0;          // bits per channel
    const void* pixels = nullptr;    // not owned; may be null
    std::vector<std::byte> storage;  // used instead of `pixels` unless it is empty
};

// The state of one effect instance: its copies of all parameters, its output target and input texture, and what the
// host said of its frame. The target and the texture are entities of the shared factories, and stay there when the
// Sequence goes. The two operations need the GL lock.
class Sequence final : public ParametersHolder {
public:
    // `context` is null for the Sequence that takes the place of a missing one.
    explicit Sequence(Context* context) : owner(context) {}

    // False for the Sequence that takes the place of a missing one: nothing may be written to it.
    bool exists() const { return owner != nullptr; }

    // Stores time and extent, and makes sure of an output target of the image's extent and depth. Its storage is
    // specified anew for every frame and not cleared: the frame's passes write every pixel.
    void prepareOutput(const FrameImage& image, double frameTime);

    // Uploads the input layer's pixels, in the host's channel order and range. Without pixels nothing happens. When
    // the script has released the texture, a new one is made and the pixels of this one frame are lost.
    void setInput(const FrameImage& image);

    Context* owner;
    std::uint32_t renderTarget = 0;  // id; 0 until the first frame
    std::uint32_t texture = 0;       // id; 0 until the first upload
    double time = 0;                 // seconds
    std::uint32_t outputWidth = 0;
    std::uint32_t outputHeight = 0;
    std::size_t frameBytes = 0;  // of the frame under way, as its host expects it: no script changes that
    std::uint32_t originX = 0;   // of the input layer; read as signed
    std::uint32_t originY = 0;
};

}  // namespace quillon
