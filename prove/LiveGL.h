#pragma once

namespace quillon::prove {

// The GL objects of this process that were made and not deleted, in whichever module.
struct LiveGL {
    int contexts = 0;
    int textures = 0;
    int framebuffers = 0;
    int shadersAndPrograms = 0;

    bool operator==(const LiveGL&) const = default;
};
LiveGL CountLiveGL();

// What GL refuses from now on, as a weak driver or a lost device does; each call refused is counted.
enum class GLRefusal {
    none,
    surface,        // no surface to make a context current on
    context,        // no context
    current,        // the context cannot be made current any more
    framebuffer,    // no framebuffer gets a name
    floatTextures,  // no storage for float pixels
    anyTexture,     // no storage at all
    shader,         // no shader object
    map,            // buffers cannot be mapped
};
void RefuseGL(GLRefusal what);
int RefusedCalls();

}  // namespace quillon::prove
