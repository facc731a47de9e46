#include "cli/EngineLock.h"

#include <GL/gl.h>

#include "engine/IPlugin.h"

namespace quillon::cli {

EngineLock::EngineLock(IPlugin& plugin) : engine(plugin) {
    if (!engine.lockGL()) throw NoOpenGL();
}

EngineLock::~EngineLock() {
    engine.unlockGL();
}

ToolError NoOpenGL() {
    return Fault(
        "no OpenGL: the system gives no context; install a graphics driver, or Mesa's software renderer "
        "(Debian: libgl1-mesa-dri libegl-mesa0)");
}

std::uint32_t LargestTextureExtent(IPlugin& engine) {
    const EngineLock lock(engine);
    GLint largest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    return static_cast<std::uint32_t>(largest);
}

}  // namespace quillon::cli
