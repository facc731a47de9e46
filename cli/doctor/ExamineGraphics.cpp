#include <GL/glew.h>
#include <fmt/format.h>

#include <string_view>

#include "cli/doctor/Doctor.h"
#include "gpu/GLEntryPoints.h"
#include "gpu/OpenGLContext.h"

namespace quillon::cli {

namespace {

#ifdef _WIN32
constexpr const char* kDriverRemedy = "install the driver of the graphics card's maker";
#else
constexpr const char* kDriverRemedy = "install a driver (Debian: apt install libegl1 libgl1-mesa-dri)";
#endif

std::string DriverText(GLenum name) {
    const auto* const text = reinterpret_cast<const char*>(glGetString(name));
    return text ? text : "";
}

GLint Limit(GLenum name) {
    GLint value = 0;
    glGetIntegerv(name, &value);
    return value;
}

// Whether shaders can draw into a target of floats, as at 16 and 32 bits.
bool HasFloatTargets() {
    GLuint texture = 0, framebuffer = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA32F, 4, 4, 0, GL_RGBA, GL_FLOAT, nullptr);
    glGenFramebuffers(1, &framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture, 0);
    const bool isComplete = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    glDeleteFramebuffers(1, &framebuffer);
    glDeleteTextures(1, &texture);
    return isComplete;
}

bool Contains(const std::string& text, std::string_view word) {
    return text.find(word) != std::string::npos;
}

}  // namespace

MachinePart ExamineGraphics() {
    MachinePart part{.name = "OpenGL"};
    OpenGLContext context;
    bool isOpen = false;
    try {
        isOpen = context.create() == 0 && context.makeCurrent() == 0;
    } catch (const OpenGLFault&) {
    }
    if (isOpen) LoadGLEntryPoints();
    const std::string renderer = isOpen ? DriverText(GL_RENDERER) : "";
    if (renderer.empty()) {
        part.state = MachinePart::State::broken;
        part.text = "there is none: no effect can be rendered or checked";
        part.remedy = kDriverRemedy;
        return part;
    }
    part.text = fmt::format("{}, OpenGL {}; textures to {} pixels a side, {} in one shader", renderer,
                            DriverText(GL_VERSION), Limit(GL_MAX_TEXTURE_SIZE), Limit(GL_MAX_TEXTURE_IMAGE_UNITS));
    if (!HasFloatTargets()) {
        part.state = MachinePart::State::broken;
        part.text += "; no targets of floats, which frames of 16 and 32 bits need";
        part.remedy = kDriverRemedy;
    } else if (Contains(renderer, "llvmpipe") || Contains(renderer, "softpipe")) {
        part.text += "; this is software: right, but slower than a graphics card";
    }
    context.clearCurrent();
    context.destroy();
    return part;
}

}  // namespace quillon::cli
