// Shaders: creating them, feeding their uniforms, and running a pass.

#include <algorithm>
#include <cstring>
#include <string>

#include "platform/Truncation.h"
#include "script/NativeArguments.h"
#include "script/Natives.h"

namespace quillon {

namespace {

// The value by which a script says "leave the uniform as it is".
constexpr std::int32_t kNoValue = -12345678;

// The built shader of an id, or null. Asked again after every coercion.
Shader* BuiltShader(std::uint32_t id) {
    if (!IsIdOf<Shader>(id)) return nullptr;
    Shader& shader = Context::Instance().FindShader(id);
    return shader.isBuilt() ? &shader : nullptr;
}

// The record that a write to this uniform goes to; null when there is none, or when the kept index has outlived it.
Parameter* UniformToWrite(std::uint32_t shaderId, const char* name) {
    Shader* shader = BuiltShader(shaderId);
    if (!shader) return nullptr;
    const std::int32_t index = shader->parameterIndex(name);
    const bool exists = index >= 0 && static_cast<std::size_t>(index) < shader->parameters.size();
    return exists ? &shader->parameters[static_cast<std::size_t>(index)] : nullptr;
}

// GL's name for the texture of an id; 0 for a stranger.
std::uint32_t GlTextureOf(std::uint32_t id) {
    const bool hasTexture = IsIdOf<RenderTarget>(id) || IsIdOf<Texture>(id) || IsIdOf<Parameter>(id);
    return hasTexture ? TextureOfId(id).textureName.get() : 0;
}

duk_ret_t initShader(duk_context* ctx) {
    const duk_idx_t count = duk_get_top(ctx);
    if (count == 0) return PushNumber(ctx, 0);
    const char* name = duk_to_string(ctx, 0);
    const char* source = count > 1 ? duk_to_string(ctx, 1) : "";
    // A variable that was never set counts as no source.
    if (std::strcmp(source, "undefined") == 0) source = "";
    return PushNumber(ctx, Context::Instance().NewShader(name, source));
}

duk_ret_t setShaderParam(duk_context* ctx) {
    const std::uint32_t shaderId = ToUnsigned(ctx, 0);
    const std::uint32_t parameterId = ToUnsigned(ctx, 1);
    if (!IsIdOf<Shader>(shaderId) || !IsIdOf<Parameter>(parameterId)) return PushBool(ctx, false);
    const Parameter& parameter = Context::Instance().FindParameter(parameterId);
    if (parameter.id == 0 || !BuiltShader(shaderId)) return PushBool(ctx, false);
    Parameter* uniform = UniformToWrite(shaderId, parameter.uniformName.c_str());
    if (uniform && uniform->kind == parameter.kind) std::memcpy(uniform->value, parameter.value, sizeof uniform->value);
    return PushBool(ctx, true);
}

duk_ret_t GetShaderParamType(duk_context* ctx) {
    const std::uint32_t shaderId = ToUnsigned(ctx, 0);
    const char* name = duk_to_string(ctx, 1);
    Shader* shader = BuiltShader(shaderId);
    return PushNumber(ctx, shader ? shader->parameterByName(name).kind : 0);
}

duk_ret_t renderShader(duk_context* ctx) {
    const std::uint32_t shaderId = ToUnsigned(ctx, 0);
    const std::uint32_t targetId = ToUnsigned(ctx, 1);
    const bool flip = duk_to_boolean(ctx, 2) != 0;
    Viewport viewport;
    if (duk_is_array(ctx, 3)) {
        float numbers[4];
        ElementsToFloats(ctx, 3, numbers);
        viewport = {numbers[0], numbers[1], numbers[2], numbers[3]};
    }
    Shader* shader = BuiltShader(shaderId);
    if (!shader || !IsIdOf<RenderTarget>(targetId)) return PushBool(ctx, false);
    RenderTarget& target = Context::Instance().FindRenderTarget(targetId);
    if (target.isUsable()) {
        target.bindTarget(viewport);
        shader->bind();
        shader->render(flip);
    }
    return PushBool(ctx, true);
}

// Compares and stores the floats of a uniform, all or none of them.
void WriteFloats(Parameter* uniform, std::span<const float> numbers) {
    if (!uniform) return;
    uniform->changed = false;
    for (std::size_t i = 0; i < numbers.size(); ++i)
        if (uniform->floatAt(static_cast<int>(i)) != numbers[i]) uniform->changed = true;  // also when one is NaN
    if (!uniform->changed) return;
    for (std::size_t i = 0; i < numbers.size(); ++i) uniform->setFloatAt(static_cast<int>(i), numbers[i]);
}

void WriteWord(Parameter* uniform, std::uint32_t word) {
    if (!uniform) return;
    uniform->changed = uniform->wordValue() != word;
    if (uniform->changed) uniform->setWordValue(word);
}

duk_ret_t setShaderParamVal(duk_context* ctx) {
    const std::uint32_t shaderId = ToUnsigned(ctx, 0);
    const char* name = duk_to_string(ctx, 1);
    Shader* shader = BuiltShader(shaderId);
    if (!shader) return PushBool(ctx, false);
    const auto writeArray = [&](std::size_t length) {
        if (!duk_is_array(ctx, 2) || duk_get_length(ctx, 2) != length) return;
        float numbers[4];
        ElementsToFloats(ctx, 2, {numbers, length});
        WriteFloats(UniformToWrite(shaderId, name), {numbers, length});
    };
    switch (shader->parameterByName(name).kind) {
        case FLOAT:
        case ANGLE: {
            const float number = ToFloat(ctx, 2);
            if (number != static_cast<float>(kNoValue)) WriteFloats(UniformToWrite(shaderId, name), {&number, 1});
            break;
        }
        case POINT:
            writeArray(3);
            break;
        case COLOR:
            writeArray(4);
            break;
        case POINT2D:
            writeArray(2);
            break;
        case LAYER: {
            const std::uint32_t id = ToUnsigned(ctx, 2);
            WriteWord(UniformToWrite(shaderId, name), GlTextureOf(id));
            break;
        }
        case TEXTURE:
            duk_to_int(ctx, 2);
            break;  // looked at, and stored nowhere
        case BOOL:
        case POPUP: {
            const std::int32_t number = TruncateToInt32(duk_to_number(ctx, 2));
            if (number != kNoValue) WriteWord(UniformToWrite(shaderId, name), static_cast<std::uint32_t>(number));
            break;
        }
        default:
            break;
    }
    return PushBool(ctx, true);
}

duk_ret_t getShaderError(duk_context* ctx) {
    const std::uint32_t id = ToUnsigned(ctx, 0);
    if (!IsIdOf<Shader>(id)) {
        duk_push_string(ctx, "Id is not a shader!");
        return 1;
    }
    // Pushing may collect garbage, and a finalizer may release the shader: the text is copied when all memory is there.
    const std::size_t length = Context::Instance().FindShader(id).errorText.size();
    void* bytes = duk_push_fixed_buffer(ctx, length);
    const std::string& text = Context::Instance().FindShader(id).errorText;
    if (length != 0) std::memcpy(bytes, text.data(), std::min(length, text.size()));
    duk_buffer_to_string(ctx, -1);
    return 1;
}

constexpr Native kShaderNatives[] = {
    {"QL_initShader", Guarded<initShader>, DUK_VARARGS},       {"QL_setShaderParam", Guarded<setShaderParam>, 2},
    {"QL_getShaderParamType", Guarded<GetShaderParamType>, 2}, {"QL_renderShader", Guarded<renderShader>, 4},
    {"QL_setShaderParamVal", Guarded<setShaderParamVal>, 3},   {"QL_getShaderError", Guarded<getShaderError>, 1},
};

}  // namespace

std::span<const Native> ShaderNatives() {
    return kShaderNatives;
}

}  // namespace quillon
