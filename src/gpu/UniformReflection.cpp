// The uniforms that a linked program really has, as records that scripts can feed.

#include <GL/glew.h>

#include <array>
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

        // The kind that the effect declares for a control of this name goes before GLSL's type.
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

}  // namespace quillon
