// The uniforms of a shader: which ones the linked program has, where they are, and how their values reach GL.

#include <GL/glew.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#include "gpu/Shader.h"

namespace quillon {

namespace {

constexpr GLsizei kNameBytes = 128;

static_assert(static_cast<GLenum>(UniformType::float1) == GL_FLOAT &&
              static_cast<GLenum>(UniformType::vec2) == GL_FLOAT_VEC2 &&
              static_cast<GLenum>(UniformType::vec3) == GL_FLOAT_VEC3 &&
              static_cast<GLenum>(UniformType::vec4) == GL_FLOAT_VEC4 &&
              static_cast<GLenum>(UniformType::int1) == GL_INT && static_cast<GLenum>(UniformType::bool1) == GL_BOOL &&
              static_cast<GLenum>(UniformType::sampler2D) == GL_SAMPLER_2D);

constexpr std::uint32_t kBuiltInFlag = 1;

// Names that authors expect the host to know. They are marked, and fed by the script like any other.
bool IsBuiltIn(std::string_view name) {
    constexpr std::string_view kNames[] = {"sInput0", "resolution", "time", "_height_"};
    for (const std::string_view builtIn : kNames)
        if (name == builtIn) return true;
    return name.find("s_Texture") != std::string_view::npos;
}

}  // namespace

std::uint32_t Shader::uniformKind(std::uint32_t glType, std::int32_t size) {
    if (size > 1) {
        errorText = "Shader parameter arrays are not supported!";
        return UNKNOWN;
    }
    for (const ControlKind& kind : kControlKinds)
        if (kind.uniformType != UniformType::none && static_cast<std::uint32_t>(kind.uniformType) == glType)
            return kind.number;
    errorText = "Unknown shader parameter!";
    return UNKNOWN;
}

void Shader::reflectUniforms() {
    GLint count = 0;
    glGetProgramiv(program.get(), GL_ACTIVE_UNIFORMS, &count);
    std::vector<Parameter> uniforms;
    for (GLint index = 0; index < count; ++index) {
        std::array<GLchar, kNameBytes> uniformName{};
        GLint size = 0;
        GLenum type = 0;
        glGetActiveUniform(program.get(), static_cast<GLuint>(index), kNameBytes, nullptr, &size, &type,
                           uniformName.data());
        if (size == 0) continue;

        Parameter& uniform = uniforms.emplace_back();
        uniform.uniformName = uniformName.data();
        uniform.kind = uniformKind(type, size);
        uniform.flags = IsBuiltIn(uniform.uniformName) ? kBuiltInFlag : 0;
        uniform.location = uniformLocation(uniform.uniformName);

        // The kind that the effect declares for a control of this name wins over GLSL's type.
        const std::uint32_t declared = declaredParameters ? declaredParameters->Count() : 0;
        for (std::uint32_t position = 0; position < declared; ++position) {
            const Parameter& control = declaredParameters->At(position);
            if (control.uniformName != uniform.uniformName) continue;
            uniform.kind = control.kind;
            break;
        }
    }
    parameters = std::move(uniforms);
}

void Shader::applyUniforms() {
    for (const Parameter& uniform : parameters) {
        const GLint location = uniform.location;
        const GLfloat floats[] = {uniform.floatAt(0), uniform.floatAt(1), uniform.floatAt(2), uniform.floatAt(3)};
        const GLint integer = uniform.intValue();
        switch (ControlKindOf(uniform.kind).uniformType) {
            case UniformType::float1:
                glUniform1f(location, floats[0]);
                break;
            case UniformType::vec3:
                glUniform3fv(location, 1, floats);
                break;
            case UniformType::vec4:
                glUniform4fv(location, 1, floats);
                break;
            case UniformType::vec2:
                glUniform2fv(location, 1, floats);
                break;
            case UniformType::bool1:
            case UniformType::int1:
                glUniform1iv(location, 1, &integer);
                break;
            case UniformType::sampler2D: {
                glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(nextTextureUnit));
                glBindTexture(GL_TEXTURE_2D, uniform.wordValue());
                glUniform1i(location, nextTextureUnit);
                GLint width = 0;
                GLint height = 0;
                glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &width);
                glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &height);
                applyTextureParams(width, height);
                ++nextTextureUnit;
                break;
            }
            case UniformType::none:
                break;
        }
    }
}

void Shader::applyTextureParams(std::int32_t width, std::int32_t height) {
    const auto w = static_cast<GLfloat>(width);
    const auto h = static_cast<GLfloat>(height);
    const GLfloat extent[] = {w, h, 1.0f / w, 1.0f / h};  // infinities for texture 0
    for (const char* format : {"s_Texture%dParams", "Texture%dParams"}) {
        std::array<char, 40> uniformName{};
        std::snprintf(uniformName.data(), uniformName.size(), format, static_cast<int>(nextTextureUnit));
        if (const GLint location = uniformLocation(uniformName.data()); location != -1)
            glUniform4fv(location, 1, extent);
    }
}

std::int32_t Shader::uniformLocation(const std::string& uniformName) {
    const auto cached = locationCache.find(uniformName);
    if (cached != locationCache.end()) return cached->second;
    const GLint location = glGetUniformLocation(program.get(), uniformName.c_str());
    locationCache.emplace(uniformName, location);
    return location;
}

std::int32_t Shader::parameterIndex(const std::string& uniformName) {
    const auto cached = indexCache.find(uniformName);
    if (cached != indexCache.end()) return cached->second;
    const auto found = std::find_if(parameters.begin(), parameters.end(),
                                    [&](const Parameter& uniform) { return uniform.uniformName == uniformName; });
    if (found == parameters.end()) return -1;
    const auto index = static_cast<std::int32_t>(found - parameters.begin());
    indexCache.emplace(uniformName, index);
    return index;
}

Parameter& Shader::parameterByName(const std::string& uniformName) {
    const std::int32_t index = parameterIndex(uniformName);
    const bool exists = index >= 0 && static_cast<std::size_t>(index) < parameters.size();
    return exists ? parameters[static_cast<std::size_t>(index)] : ParametersHolder::Null();
}

}  // namespace quillon
