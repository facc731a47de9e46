#include "entities/Sequence.h"

#include "entities/Context.h"

namespace quillon {

void Sequence::prepareOutput(const FrameImage& image, double frameTime) {
    if (!exists()) return;
    time = frameTime;
    outputWidth = image.width;
    outputHeight = image.height;
    frameBytes = std::size_t{image.width} * image.height * image.bits / 2;
    if (renderTarget == 0) renderTarget = owner->NewRenderTarget(image.width, image.height, image.bits);
    RenderTarget& target = owner->FindRenderTarget(renderTarget);
    if (!target.isUsable()) {
        renderTarget = owner->NewRenderTarget(image.width, image.height, image.bits);
        return;
    }
    // Anew for every frame, in the same size too: the texture keeps its name and the framebuffer its attachment.
    const PixelLayout layout{image.width, image.height, image.bits, static_cast<std::int64_t>(image.stride)};
    target.uploadPixels(nullptr, layout, /*argbOrdered=*/true, /*expand15=*/true);
}

void Sequence::setInput(const FrameImage& image) {
    if (!exists() || (!image.pixels && image.storage.empty())) return;
    if (texture == 0) texture = owner->NewTexture(image.width, image.height, image.bits);
    Texture& found = owner->FindTexture(texture);
    if (!found.textureName) {
        // The script has released it. The new one gets its pixels with the next frame.
        texture = owner->NewTexture(image.width, image.height, image.bits);
        return;
    }
    const PixelLayout layout{image.width, image.height, image.bits, static_cast<std::int64_t>(image.stride)};
    const void* pixels = image.storage.empty() ? image.pixels : image.storage.data();
    found.uploadPixels(pixels, layout, /*argbOrdered=*/true, /*expand15=*/true);
}

}  // namespace quillon
