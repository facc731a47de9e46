#pragma once

#include <memory>
#include <string>

namespace quillon {

// The system's side of the private OpenGL context: a surface that nobody sees and the one compatibility context that
// draws on it. On Windows it is a hidden window with WGL, elsewhere an EGL pixel buffer without a window. The surface
// lives until the process ends, whichever thread opened it.
//
// The context is current on one thread at a time. On another thread makeCurrent() then fails at once, without waiting.
// Nothing here locks; OpenGLContext does.
class GLWindow {
public:
    enum class OpenResult {
        opened,        // there is a surface; the context may still be missing: makeCurrent() fails then
        windowFailed,  // the window system refused the window class or the window
        noDisplay,     // the system offers no OpenGL at all
    };

    GLWindow();
    ~GLWindow();  // leaves window, context and display as they are; see close()
    GLWindow(const GLWindow&) = delete;
    GLWindow& operator=(const GLWindow&) = delete;

    // Makes the surface of width by height pixels and the context, and makes it current on the calling thread.
    // A context that cannot be made is not reported here. `className` and `title` are used where windows have them.
    OpenResult open(const std::wstring& className, const std::wstring& title, int width, int height);

    // Makes no context current and deletes the context, if there is one, then lets go of the device and the window
    // class. False when the system refuses to delete the context, which is kept then. The window itself stays.
    bool close();

    // False when there is no context, or while it is current on another thread.
    bool makeCurrent();
    // Makes no context current on the calling thread.
    void clearCurrent();
    void swapBuffers();

private:
    struct System;
    std::unique_ptr<System> system;
};

}  // namespace quillon
