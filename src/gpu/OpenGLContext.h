#pragma once

#include <cstdint>
#include <string>

#include "platform/GLWindow.h"
#include "platform/SystemMutex.h"

namespace quillon {

// What the window system refused: 1 the window class or the window, 2 the deletion of the context.
struct OpenGLFault {
    std::int32_t code;
};

// The one private OpenGL context of the process and its lock. All GL work of the system is done between entering and
// leaving a GLLockScope: the context is made current first and the mutex waited for second; on the way out the mutex
// goes first and the context second. A thread that cannot make the context current never waits.
class OpenGLContext {
public:
    // Result of makeCurrent() when there is no context or another thread has it.
    static constexpr int kMakeCurrentFailed = 7;

    OpenGLContext() = default;
    virtual ~OpenGLContext() = default;  // ends the mutex; see destroy() for the rest
    OpenGLContext(const OpenGLContext&) = delete;
    OpenGLContext& operator=(const OpenGLContext&) = delete;

    // Makes the hidden surface and the context, which stays current on the calling thread. 0, or non-zero when the
    // system has no OpenGL at all; throws OpenGLFault 1. A context that the driver refuses shows in makeCurrent().
    int create();

    // Deletes the context; makeCurrent() fails from then on. 0, or throws OpenGLFault 2.
    int destroy();

    int makeCurrent();  // 0, or kMakeCurrentFailed
    void clearCurrent();

    bool waitLock();  // waits without limit; true when the calling thread owns the mutex, as often as it asked
    void releaseLock();

    void swapBuffers();

private:
    SystemMutex mutex;
    GLWindow window;
    std::wstring className;
    std::wstring windowName;
    std::wstring mutexName;  // built with the others, and given to nothing: the mutex is private to the process
};

}  // namespace quillon
