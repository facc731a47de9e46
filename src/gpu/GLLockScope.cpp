#include "gpu/GLLockScope.h"

#include "gpu/OpenGLContext.h"

namespace quillon {

GLLockScope::GLLockScope(OpenGLContext* glContext) : context(glContext), held(Enter(glContext)) {}

GLLockScope::~GLLockScope() {
    if (held) Leave(context);
}

bool GLLockScope::Enter(OpenGLContext* context) {
    return context && context->makeCurrent() == 0 && context->waitLock();
}

void GLLockScope::Leave(OpenGLContext* context) {
    if (!context) return;
    context->releaseLock();
    context->clearCurrent();
}

}  // namespace quillon
