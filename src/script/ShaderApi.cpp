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

// The record that a write to this uniform goes to; null when there is no such uniform, or when the cached index is out
// of date.
Parameter* UniformToWrite(std::uint32_t shaderId, const char* name) {
    Shader* shader = BuiltShader(shaderId);
    if (!shader) return nullptr;
    const std::int32_t index = shader->parameterIndex(name);
    const bool exists = index >= 0 && static_cast<std::size_t>(index) < shader->parameters.size();
    return exists ? &shader->parameters[static_cast<std::size_t>(index)] : nullptr;
}

// GL's name for the texture of an id; 0 for an id of another kind.
std::uint32_t GlTextureOf(std::uint32_t id) {
    const bool hasTexture = IsIdOf<RenderTarget>(id) || IsIdOf<Texture>(id) || IsIdOf<Parameter>(id);
    return hasTexture ? TextureOfId(id).textureName.get() : 0;
}

duk_ret_t InitShader(duk_context* ctx) {
    const duk_idx_t count = duk_get_top(ctx);
    if (count == 0) return PushNumber(ctx, 0);
    const char* name = duk_to_string(ctx, 0);
    const char* source = count > 1 ? duk_to_string(ctx, 1) : "";
    // A variable that was never set counts as no source.
    if (std::strcmp(source, "undefined") == 0) source = "";
    return PushNumber(ctx, Context::Instance().NewShader(name, source));
}

duk_ret_t SetShaderParam(duk_context* ctx) {
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

duk_ret_t RenderShader(duk_context* ctx) {
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

// Compares the floats of a uniform, and stores all of them when one differs.
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

duk_ret_t SetShaderParamVal(duk_context* ctx) {
    const std::uint32_t shaderId = ToUnsigned(ctx, 0);
    const char* name = duk_to_string(ctx, 1);
    Shader* shader = BuiltShader(shaderId);
    if (!shader) return PushBool(ctx, false);
    const ControlKind& kind = ControlKindOf(shader->parameterByName(name).kind);
    switch (kind.scriptForm) {
        case ScriptForm::number: {
            const float number = ToFloat(ctx, 2);
            if (number != static_cast<float>(kNoValue)) WriteFloats(UniformToWrite(shaderId, name), {&number, 1});
            break;
        }
        case ScriptForm::elements:
        case ScriptForm::tuple: {
            if (!duk_is_array(ctx, 2) || duk_get_length(ctx, 2) != kind.floats) break;
            float numbers[kMostFloats];
            ElementsToFloats(ctx, 2, {numbers, kind.floats});
            WriteFloats(UniformToWrite(shaderId, name), {numbers, kind.floats});
            break;
        }
        case ScriptForm::entity: {
            const std::uint32_t id = ToUnsigned(ctx, 2);
            const bool isSent = kind.uniformType != UniformType::none;
            if (isSent) WriteWord(UniformToWrite(shaderId, name), GlTextureOf(id));
            break;
        }
        case ScriptForm::integer: {
            const std::int32_t number = TruncateToInt32(duk_to_number(ctx, 2));
            if (number != kNoValue) WriteWord(UniformToWrite(shaderId, name), static_cast<std::uint32_t>(number));
            break;
        }
        case ScriptForm::none:
            break;
    }
    return PushBool(ctx, true);
}

duk_ret_t GetShaderError(duk_context* ctx) {
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
    {"QL_initShader", Guarded<InitShader>, 1, 2, true},           {"QL_setShaderParam", Guarded<SetShaderParam>, 2, 2},
    {"QL_getShaderParamType", Guarded<GetShaderParamType>, 2, 2}, {"QL_renderShader", Guarded<RenderShader>, 2, 4},
    {"QL_setShaderParamVal", Guarded<SetShaderParamVal>, 3, 3},   {"QL_getShaderError", Guarded<GetShaderError>, 1, 1},
};

}  // namespace

std::span<const Native> ShaderNatives() {
    return kShaderNatives;
}

}  // namespace quillon
