#pragma once

#include <cstdint>

#include "gpu/Texture.h"

namespace quillon {

// The rectangle of a pass in pixels of its target, y = 0 at the framebuffer's first row.
struct Viewport {
    float x = -1;
    float y = 0;
    float width = 0;  // the whole target unless both extents are above 0
    float height = 0;
};

// A texture with a framebuffer around it, so that passes can draw into it and later passes can read it. There is no
// depth, no stencil, and nothing is cleared but at initTarget. Everything here needs the GL lock.
class RenderTarget final : public Texture {
public:
    // The kind's factory, in entities/Factories.h.
    class Factory;

    // Deletes texture and framebuffer.
    void releaseGL() override;

    // Makes texture and framebuffer anew and clears them to transparent black. Whether both names exist; whether GL
    // finds the framebuffer complete is not asked.
    virtual bool initTarget(std::uint32_t columns, std::uint32_t rows, std::uint32_t bits);

    // Both GL names exist. Every caller of the operations below tests this first.
    bool isUsable() const { return framebufferName && textureName; }

    // Binds the target for drawing; it stays bound. Fractions of the viewport are cut toward zero.
    void bindTarget(const Viewport& viewport);

    // Copies all of this target's extent into all of the destination's, stretched where the sizes differ. `flip` turns
    // the picture upside down; `linear` filters. The bindings stay.
    void blitTo(RenderTarget& destination, bool flip, bool linear);

    // Reads the target back: height rows of width pixels, rows tight, the framebuffer's y = 0 first; a pixel is A, R,
    // G, B in the target's depth (15 and 16: a word each, 0 to 65535; 32: a float each, not clamped; else a byte).
    // Null when the driver maps nothing or the size passes what the read-back buffer can have: the frame then counts
    // as not rendered. Lives until unmapPixels(); one map may be open in the process.
    const void* mapPixels();
    static void unmapPixels();

    GLFramebufferName framebufferName;
};

}  // namespace quillon
