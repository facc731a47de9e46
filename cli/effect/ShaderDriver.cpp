#include "cli/effect/ShaderDriver.h"

#include <GL/glew.h>

#include <algorithm>
#include <string>

#include "cli/check/shader/SpreadText.h"
#include "gpu/Shader.h"

namespace quillon::cli {

namespace {

// All of it, where the engine keeps the first 4096 bytes.
std::string CompilerLog(GLuint stage) {
    GLint length = 0;
    glGetShaderiv(stage, GL_INFO_LOG_LENGTH, &length);
    std::string log(static_cast<std::size_t>(std::max(length, 1)), '\0');
    glGetShaderInfoLog(stage, static_cast<GLsizei>(log.size()), nullptr, log.data());
    return log.substr(0, log.find('\0'));
}

std::string LinkerLog(GLuint program) {
    GLint length = 0;
    glGetProgramiv(program, GL_INFO_LOG_LENGTH, &length);
    std::string log(static_cast<std::size_t>(std::max(length, 1)), '\0');
    glGetProgramInfoLog(program, static_cast<GLsizei>(log.size()), nullptr, log.data());
    return log.substr(0, log.find('\0'));
}

}  // namespace

DriverVerdict AskDriver(const Shader& shader, const ShaderSource& source) {
    using Outcome = DriverVerdict::Outcome;
    DriverVerdict verdict;
    const GLuint stage = shader.fragmentShader.get();
    GLint isCompiled = GL_FALSE;
    glGetShaderiv(stage, GL_COMPILE_STATUS, &isCompiled);
    if (!shader.errorText.empty()) verdict.outcome = isCompiled == GL_TRUE ? Outcome::notLinked : Outcome::notCompiled;
    if (verdict.outcome == Outcome::notLinked) verdict.linkLog = LinkerLog(shader.program.get());
    verdict.log = CompilerLog(stage);
    if (verdict.log.empty()) return verdict;

    const std::string text = SpreadText(source).text;
    const GLchar* strings[] = {Shader::kPreamble, text.c_str()};
    const GLShaderName spread(glCreateShader(GL_FRAGMENT_SHADER));
    glShaderSource(spread.get(), 2, strings, nullptr);
    glCompileShader(spread.get());
    verdict.spreadLog = CompilerLog(spread.get());
    return verdict;
}

}  // namespace quillon::cli
