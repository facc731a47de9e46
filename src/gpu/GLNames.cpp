#include "gpu/GLNames.h"

#include <GL/glew.h>

namespace quillon {

namespace {
bool abandoned = false;
}

void AbandonGLObjects() {
    abandoned = true;
}

void DeleteGLTexture(std::uint32_t name) {
    if (!abandoned) glDeleteTextures(1, &name);
}

void DeleteGLFramebuffer(std::uint32_t name) {
    if (!abandoned) glDeleteFramebuffers(1, &name);
}

void DeleteGLShader(std::uint32_t name) {
    if (!abandoned) glDeleteShader(name);
}

void DeleteGLProgram(std::uint32_t name) {
    if (!abandoned) glDeleteProgram(name);
}

}  // namespace quillon
