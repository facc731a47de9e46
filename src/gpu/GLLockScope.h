#pragma once

namespace quillon {

class OpenGLContext;

// Takes the GL lock for its lifetime: see OpenGLContext for the order. Scopes may nest on one thread, but each leave
// makes no context current, so that nothing of GL may be called after an inner scope.
class GLLockScope {
public:
    // `context` may be null, which holds nothing.
    explicit GLLockScope(OpenGLContext* context);
    ~GLLockScope();
    GLLockScope(const GLLockScope&) = delete;
    GLLockScope& operator=(const GLLockScope&) = delete;

    bool isHeld() const { return held; }

    // The two halves, for callers whose lock does not follow a scope. A caller leaves only what it entered.
    static bool Enter(OpenGLContext* context);
    static void Leave(OpenGLContext* context);

private:
    OpenGLContext* context;
    bool held;
};

}  // namespace quillon
