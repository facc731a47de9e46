#include "gpu/Shader.h"

#include <GL/glew.h>

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
    return compileStage(vertexShader.get(), kVertexSource);
}

void Shader::destroyProgram() {
    vertexShader.reset();
    fragmentShader.reset();
    program.reset();
    errorText.clear();
}

bool Shader::compileStage(std::uint32_t stage, const std::string& text) {
    const GLchar* strings[] = {kPreamble, text.c_str()};
    glShaderSource(stage, 2, strings, nullptr);
    glCompileShader(stage);
    GLint status = GL_FALSE;
    glGetShaderiv(stage, GL_COMPILE_STATUS, &status);
    if (status == GL_TRUE) {
        errorText.clear();
        return true;
    }
    std::array<GLchar, kLogBytes> log{};
    glGetShaderInfoLog(stage, kLogBytes, nullptr, log.data());
    errorText = std::string("Shader compilation failed:\n") + log.data();
    return false;
}

bool Shader::compileSource(const std::string& text) {
    if (text.empty()) return false;
    parameters.clear();
    locationCache.clear();
    source = text;
    if (!compileStage(fragmentShader.get(), RewriteFragment(source).text)) return false;

    glLinkProgram(program.get());
    GLint status = GL_FALSE;
    glGetProgramiv(program.get(), GL_LINK_STATUS, &status);
    if (status == GL_TRUE) {
        reflectUniforms();
        // A uniform that cannot be fed stays at kind 0, and the reason is dropped.
        errorText.clear();
        return true;
    }
    std::array<GLchar, kLogBytes> log{};
    glGetProgramInfoLog(program.get(), kLogBytes, nullptr, log.data());
    errorText = std::string("Program linking failed:\n") + log.data();
    return false;
}

bool Shader::compileFile(const std::wstring& filePath) {
    if (filePath.empty()) return false;
    path = filePath;
    const std::string text = ReadFileText(path);
    if (!text.empty()) return compileSource(text);
    errorText = "Shader file not found or shader is empty!";
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

}  // namespace quillon
