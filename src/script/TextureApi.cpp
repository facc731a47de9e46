// Textures from files of the package, and their GL state.

#include "script/NativeArguments.h"
#include "script/Natives.h"

namespace quillon {

Texture& TextureOfId(std::uint32_t id) {
    Context& context = Context::Instance();
    if (IsIdOf<Parameter>(id)) return context.FindTexture(context.FindParameter(id).texture);
    if (IsIdOf<RenderTarget>(id)) return context.FindRenderTarget(id);
    return context.FindTexture(id);
}

namespace {

duk_ret_t InitTexture(duk_context* ctx) {
    const duk_idx_t count = duk_get_top(ctx);
    if (count == 0) return PushNumber(ctx, 0);
    const char* file = duk_to_string(ctx, 0);
    if (count > 1) duk_to_string(ctx, 1);  // and no more than that
    return PushNumber(ctx, Context::Instance().NewTextureFromFile(file));
}

duk_ret_t SetTextureParam(duk_context* ctx) {
    const std::uint32_t id = ToUnsigned(ctx, 0);
    if (!TextureOfId(id).textureName) return PushBool(ctx, false);
    const std::uint32_t name = ToUnsigned(ctx, 1);
    const std::int32_t value = duk_to_int(ctx, 2);
    Texture& texture = TextureOfId(id);
    if (!texture.textureName) return PushBool(ctx, false);
    texture.setParameter(name, value);
    return PushBool(ctx, true);
}

constexpr Native kTextureNatives[] = {
    {"QL_initTexture", Guarded<InitTexture>, 1, 2, true},
    {"QL_setTextureParam", Guarded<SetTextureParam>, 3, 3},
};

}  // namespace

std::span<const Native> TextureNatives() {
    return kTextureNatives;
}

}  // namespace quillon
