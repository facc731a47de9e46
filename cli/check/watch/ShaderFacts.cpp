#include "cli/check/watch/ShaderFacts.h"

#include <GL/glew.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

#include "gpu/Shader.h"
#include "platform/WideText.h"

namespace quillon::cli {

namespace {

constexpr std::pair<GLenum, std::string_view> kTypeNames[] = {
    {GL_FLOAT, "float"},
    {GL_FLOAT_VEC2, "vec2"},
    {GL_FLOAT_VEC3, "vec3"},
    {GL_FLOAT_VEC4, "vec4"},
    {GL_INT, "int"},
    {GL_INT_VEC2, "ivec2"},
    {GL_INT_VEC3, "ivec3"},
    {GL_INT_VEC4, "ivec4"},
    {GL_BOOL, "bool"},
    {GL_BOOL_VEC2, "bvec2"},
    {GL_BOOL_VEC3, "bvec3"},
    {GL_BOOL_VEC4, "bvec4"},
    {GL_FLOAT_MAT2, "mat2"},
    {GL_FLOAT_MAT3, "mat3"},
    {GL_FLOAT_MAT4, "mat4"},
    {GL_SAMPLER_1D, "sampler1D"},
    {GL_SAMPLER_2D, "sampler2D"},
    {GL_SAMPLER_3D, "sampler3D"},
    {GL_SAMPLER_CUBE, "samplerCube"},
};

}  // namespace

DeclaredUniforms UniformsOf(const Shader& shader) {
    DeclaredUniforms uniforms;
    GLint count = 0;
    glGetProgramiv(shader.program.get(), GL_ACTIVE_UNIFORMS, &count);
    for (GLint index = 0; index < count; ++index) {
        std::array<GLchar, 128> name{};
        GLint size = 0;
        GLenum type = 0;
        glGetActiveUniform(shader.program.get(), static_cast<GLuint>(index), static_cast<GLsizei>(name.size()), nullptr,
                           &size, &type, name.data());
        uniforms[name.data()] = {type, size};
    }
    return uniforms;
}

std::string_view WordsOfGLType(std::uint32_t glType) {
    const auto found = std::ranges::find(kTypeNames, glType, &std::pair<GLenum, std::string_view>::first);
    return found == std::end(kTypeNames) ? "another type" : found->second;
}

bool Feeds(const ControlKind& kind, std::uint32_t glType) {
    const auto isInteger = [](std::uint32_t type) { return type == GL_INT || type == GL_BOOL; };
    const auto type = static_cast<std::uint32_t>(kind.uniformType);
    return type == glType || (isInteger(type) && isInteger(glType));
}

const Parameter* FindUniform(const Shader& shader, std::string_view name) {
    const auto found = std::ranges::find(shader.parameters, name, &Parameter::uniformName);
    return found == shader.parameters.end() ? nullptr : &*found;
}

std::string WordsOfUniform(const Shader& shader, std::string_view name) {
    return fmt::format("'{}' of shader \"{}\"", name, NarrowToBytes(shader.name));
}

}  // namespace quillon::cli
