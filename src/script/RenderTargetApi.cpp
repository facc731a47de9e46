// Offscreen targets, and the instance's own output and input.

#include "script/NativeArguments.h"
#include "script/Natives.h"

namespace quillon {

namespace {

duk_ret_t InitRenderTarget(duk_context* ctx) {
    const std::uint32_t width = ToUnsigned(ctx, 0);
    const std::uint32_t height = ToUnsigned(ctx, 1);
    const std::uint32_t bits = ToUnsigned(ctx, 2);
    return PushNumber(ctx, Context::Instance().NewRenderTarget(width, height, bits));
}

duk_ret_t BlitRenderTarget(duk_context* ctx) {
    const std::uint32_t source = ToUnsigned(ctx, 0);
    const std::uint32_t destination = ToUnsigned(ctx, 1);
    const bool flip = duk_to_boolean(ctx, 2) != 0;
    const bool linear = duk_to_boolean(ctx, 3) != 0;
    if (!IsIdOf<RenderTarget>(source) || !IsIdOf<RenderTarget>(destination)) return PushBool(ctx, false);
    RenderTarget& from = Context::Instance().FindRenderTarget(source);
    RenderTarget& to = Context::Instance().FindRenderTarget(destination);
    if (!from.isUsable() || !to.isUsable()) return PushBool(ctx, false);
    from.blitTo(to, flip, linear);
    return PushBool(ctx, true);
}

// In spite of its name it serves targets and textures, not surfaces.
duk_ret_t GetSurfaceDim(duk_context* ctx) {
    const std::uint32_t id = ToUnsigned(ctx, 0);
    const Texture* texture = nullptr;
    if (IsIdOf<RenderTarget>(id)) {
        RenderTarget& target = Context::Instance().FindRenderTarget(id);
        if (target.framebufferName) texture = &target;
    } else if (IsIdOf<Texture>(id)) {
        texture = &Context::Instance().FindTexture(id);
    }
    if (!texture || !texture->textureName) return PushBool(ctx, false);
    const double numbers[] = {static_cast<double>(texture->width), static_cast<double>(texture->height),
                              static_cast<double>(texture->bitDepth)};
    return PushNumbers(ctx, numbers);
}

duk_ret_t GetSequenceRT(duk_context* ctx) {
    return PushNumber(ctx, Context::Instance().CurrentSequence().renderTarget);
}

duk_ret_t GetSequenceTexture(duk_context* ctx) {
    return PushNumber(ctx, Context::Instance().CurrentSequence().texture);
}

constexpr Native kRenderTargetNatives[] = {
    {"QL_initRenderTarget", Guarded<InitRenderTarget>, 3, 3},
    {"QL_blitRenderTarget", Guarded<BlitRenderTarget>, 2, 4},
    {"QL_getSurfaceDim", Guarded<GetSurfaceDim>, 1, 1},
    {"QL_getSequenceRT", Guarded<GetSequenceRT>, 0, 0},
    {"QL_getSequenceTexture", Guarded<GetSequenceTexture>, 0, 0},
};

}  // namespace

std::span<const Native> RenderTargetNatives() {
    return kRenderTargetNatives;
}

}  // namespace quillon
