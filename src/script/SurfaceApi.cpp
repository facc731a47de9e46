// Pictures on their way between the GPU and the CPU.

#include "imagelib/Quantize.h"
#include "script/NativeArguments.h"
#include "script/Natives.h"

namespace quillon {

namespace {

duk_ret_t InitSurface(duk_context* ctx) {
    // Without three arguments the coercion of a missing one raises an error, before anything is made.
    const std::uint32_t width = ToUnsigned(ctx, 0);
    const std::uint32_t height = ToUnsigned(ctx, 1);
    const std::uint32_t bits = ToUnsigned(ctx, 2);
    return PushNumber(ctx, Context::Instance().NewSurface(width, height, bits));
}

// Reads a target back into the surface, rows in GL's order; the surface stays empty when nothing could be mapped.
void ReadBack(RenderTarget& target, Surface& surface) {
    surface.rowBytes = (std::uint64_t{target.bitDepth} * target.width * 4) >> 3;
    if (!target.isUsable()) return;
    // Also when there is no memory for the pixels: while a buffer is mapped, no other picture can be read back.
    const struct Unmapping {
        ~Unmapping() { RenderTarget::unmapPixels(); }
    } atTheEnd;
    if (const void* mapped = target.mapPixels()) {
        const auto* first = static_cast<const std::byte*>(mapped);
        surface.pixels.assign(first, first + surface.height * surface.rowBytes);
    }
}

duk_ret_t TextureToSurface(duk_context* ctx) {
    const std::uint32_t id = ToUnsigned(ctx, 0);
    if (id == 0) return PushNumber(ctx, 0);
    Context& context = Context::Instance();
    const std::uint32_t surfaceId = context.NewSurface(2, 2, 8);
    Surface& surface = context.FindSurface(surfaceId);
    Texture& source = TextureOfId(id);
    surface.width = source.width;
    surface.height = source.height;
    surface.bitDepth = source.bitDepth;
    if (IsIdOf<RenderTarget>(id)) {
        ReadBack(context.FindRenderTarget(id), surface);
    } else {
        surface.rowBytes = static_cast<std::uint64_t>(source.rowBytes);
        surface.borrowedPixels = source.pixelCopy();
    }
    return PushNumber(ctx, surfaceId);
}

duk_ret_t SurfaceToTexture(duk_context* ctx) {
    const std::uint32_t id = ToUnsigned(ctx, 0);
    if (!IsIdOf<Surface>(id)) return PushBool(ctx, false);
    Context& context = Context::Instance();
    const std::uint32_t texture = context.NewTexture(2, 2, 8);
    context.FindTexture(texture).loadFromSurface(context.FindSurface(id), /*flip=*/false);
    return PushNumber(ctx, texture);
}

// The arguments' order is the script's own.
duk_ret_t SurfaceQuantize(duk_context* ctx) {
    const std::uint32_t id = ToUnsigned(ctx, 0);
    if (!IsIdOf<Surface>(id)) return PushBool(ctx, false);  // before the script's own conversions run
    const bool grayscale = duk_to_boolean(ctx, 1) != 0;
    const std::int32_t mode = duk_to_int(ctx, 2);
    const std::int32_t dither = duk_to_int(ctx, 3);
    const float value = ToFloat(ctx, 4);
    const bool serpentine = duk_to_boolean(ctx, 5) != 0;
    Surface& surface = Context::Instance().FindSurface(id);
    if (surface.width == 0 || surface.height == 0) return PushBool(ctx, false);
    SurfaceQuantize(surface, mode, dither, value, grayscale, serpentine);
    return PushBool(ctx, true);
}

duk_ret_t SurfaceCopyTo(duk_context* ctx) {
    const std::uint32_t id = ToUnsigned(ctx, 0);
    const std::uint32_t targetId = ToUnsigned(ctx, 1);
    const bool flip = duk_to_boolean(ctx, 2) != 0;
    Context& context = Context::Instance();
    if (!IsIdOf<Surface>(id)) return PushBool(ctx, false);
    Surface& surface = context.FindSurface(id);
    if (surface.width == 0 || surface.height == 0) return PushBool(ctx, false);
    if (IsIdOf<RenderTarget>(targetId)) {
        if (!context.FindRenderTarget(targetId).framebufferName) return PushBool(ctx, false);
    } else if (!IsIdOf<Texture>(targetId)) {
        return PushBool(ctx, false);
    }
    Texture& target = TextureOfId(targetId);
    if (!target.textureName) return PushBool(ctx, false);
    target.loadFromSurface(surface, flip);
    return PushBool(ctx, true);
}

constexpr Native kSurfaceNatives[] = {
    {"QL_initSurface", Guarded<InitSurface>, 3, 3, true},     {"QL_textureToSurface", Guarded<TextureToSurface>, 1, 1},
    {"QL_surfaceToTexture", Guarded<SurfaceToTexture>, 1, 1}, {"QL_surfaceQuantize", Guarded<SurfaceQuantize>, 4, 6},
    {"QL_surfaceCopyTo", Guarded<SurfaceCopyTo>, 2, 3},
};

}  // namespace

std::span<const Native> SurfaceNatives() {
    return kSurfaceNatives;
}

}  // namespace quillon
