#include "gpu/Shader.h"

#include <GL/glew.h>

#include <algorithm>
#include <array>
#include <cstdio>

#include "gpu/FragmentRewriting.h"
#include "package/FileAccess.h"
#include "platform/WideText.h"

namespace quillon {

namespace {

constexpr GLsizei kLogBytes = 4096;

constexpr const char* kVertexSource =
    "void main() { gl_Position = gl_Vertex; gl_TexCoord[0] = gl_MultiTexCoord0; gl_TexCoord[1] = gl_MultiTexCoord1; "
    "gl_TexCoord[2] = gl_MultiTexCoord2; gl_TexCoord[3] = gl_MultiTexCoord3; gl_FrontColor = gl_Color; }";

struct QuadCorner {
    GLint x, y, s, t;
};
constexpr QuadCorner kQuad[] = {{-1, -1, 0, 0}, {1, -1, 1, 0}, {1, 1, 1, 1}, {-1, 1, 0, 1}};

}  // namespace

bool Shader::createProgram() {
    destroyProgram();
    vertexShader.reset(glCreateShader(GL_VERTEX_SHADER));
    fragmentShader.reset(glCreateShader(GL_FRAGMENT_SHADER));
    program.reset(glCreateProgram());
    glAttachShader(program.get(), vertexShader.get());
    glAttachShader(program.get(), fragmentShader.get());
    return compileStage(vertexShader.get(), kVertexSource, /*addedLines=*/0);
}

void Shader::destroyProgram() {
    vertexShader.reset();
    fragmentShader.reset();
    program.reset();
    clearFault();
}

void Shader::clearFault() {
    errorText.clear();
    fault = {};
}

void Shader::setFault(ShaderFault::Kind kind, const char* log, int addedLines) {
    constexpr const char* kHeadings[] = {"", "Shader file not found or shader is empty!",
                                         "Shader compilation failed:\n", "Program linking failed:\n"};
    errorText = std::string(kHeadings[static_cast<std::size_t>(kind)]) + log;
    fault = {kind, ReadShaderLog(log, source, kPreambleLines, addedLines)};
}

bool Shader::compileStage(std::uint32_t stage, const std::string& text, int addedLines) {
    const GLchar* strings[] = {kPreamble, text.c_str()};
    glShaderSource(stage, 2, strings, nullptr);
    glCompileShader(stage);
    GLint status = GL_FALSE;
    glGetShaderiv(stage, GL_COMPILE_STATUS, &status);
    if (status == GL_TRUE) {
        clearFault();
        return true;
    }
    std::array<GLchar, kLogBytes> log{};
    glGetShaderInfoLog(stage, kLogBytes, nullptr, log.data());
    setFault(ShaderFault::Kind::compile, log.data(), addedLines);
    return false;
}

bool Shader::compileSource(const std::string& text) {
    if (text.empty()) return false;
    parameters.clear();
    locationCache.clear();
    source = text;
    const RewrittenFragment fragment = RewriteFragment(source);
    const auto addedLines = static_cast<int>(fragment.addedLines);
    if (!compileStage(fragmentShader.get(), fragment.text, addedLines)) return false;

    glLinkProgram(program.get());
    GLint status = GL_FALSE;
    glGetProgramiv(program.get(), GL_LINK_STATUS, &status);
    if (status == GL_TRUE) {
        reflectUniforms();
        // What reflection says of uniforms that cannot be fed is dropped: they stay at kind 0, and that is all.
        clearFault();
        return true;
    }
    std::array<GLchar, kLogBytes> log{};
    glGetProgramInfoLog(program.get(), kLogBytes, nullptr, log.data());
    setFault(ShaderFault::Kind::link, log.data(), addedLines);
    return false;
}

bool Shader::compileFile(const std::wstring& filePath) {
    if (filePath.empty()) return false;
    path = filePath;
    const std::string text = ReadFileText(path);
    if (!text.empty()) return compileSource(text);
    setFault(ShaderFault::Kind::noSource, "", 0);
    return false;
}

bool Shader::rebuild(bool fromSource) {
    const bool created = createProgram();
    const bool compiled = fromSource ? compileSource(source) : compileFile(path);
    return created && compiled;
}

bool Shader::initFromName(const std::string& shaderName, const std::string& fragmentSource,
                          const std::wstring& basePath, ParametersHolder& declared) {
    declaredParameters = &declared;
    createProgram();
    name = WidenBytes(shaderName);
    if (!fragmentSource.empty()) return compileSource(fragmentSource);
    return compileFile(basePath + L"\\" + name + L".frag");
}

bool Shader::bind() {
    if (!errorText.empty() || !isBuilt()) return false;
    glUseProgram(program.get());
    nextTextureUnit = 0;
    return true;
}

void Shader::unbind() {}

void Shader::render(bool flip) {
    if (!errorText.empty()) return;
    applyUniforms();
    glDisable(GL_SCISSOR_TEST);
    glDisable(GL_DEPTH_TEST);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glBegin(GL_QUADS);
    for (const QuadCorner& corner : kQuad) {
        glTexCoord2i(corner.s, flip ? 1 - corner.t : corner.t);
        glVertex3i(corner.x, corner.y, 0);
    }
    glEnd();
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
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
