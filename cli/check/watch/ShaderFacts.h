#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "parameter/Parameter.h"

namespace quillon {
class Shader;
}

namespace quillon::cli {

// The uniforms of a shader as its text declares them, by name; one of an array is "name[0]". Needs the GL lock.
struct DeclaredUniform {
    std::uint32_t glType = 0;
    std::int32_t size = 1;
};
using DeclaredUniforms = std::map<std::string, DeclaredUniform, std::less<>>;
DeclaredUniforms UniformsOf(const Shader& shader);

// "vec3", as a shader's text says it; "another type" for one without a name here.
std::string_view WordsOfGLType(std::uint32_t glType);

// Whether GL takes the value of a control or uniform of this kind for such a uniform.
bool Feeds(const ControlKind& kind, std::uint32_t glType);

// The uniform's record in the engine; null when the compiled shader has none of this name.
const Parameter* FindUniform(const Shader& shader, std::string_view name);

// "'size' of shader \"blur\"".
std::string WordsOfUniform(const Shader& shader, std::string_view name);

}  // namespace quillon::cli
