#include "platform/GLWindow.h"

#include <windows.h>

namespace quillon {

struct GLWindow::System {
    std::wstring className;
    HWND window = nullptr;
    HDC deviceContext = nullptr;
    HGLRC renderContext = nullptr;
};

namespace {

// What a make-current said. Why it failed and on which thread is told to a debugger alone: nothing acts on it.
bool noted(BOOL succeeded) {
    if (succeeded) return true;
    [[maybe_unused]] const volatile DWORD reason = GetLastError();
    [[maybe_unused]] const volatile DWORD thread = GetCurrentThreadId();
    return false;
}

}  // namespace

GLWindow::GLWindow() : system(std::make_unique<System>()) {}
GLWindow::~GLWindow() = default;

GLWindow::OpenResult GLWindow::open(const std::wstring& className, const std::wstring& title, int width, int height) {
    system->className = className;
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof(windowClass);
    windowClass.style = CS_VREDRAW | CS_HREDRAW;
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
    windowClass.lpszClassName = system->className.c_str();
    if (!RegisterClassExW(&windowClass)) return OpenResult::windowFailed;

    // Never shown, and nobody runs a message loop for it.
    system->window = CreateWindowExW(0, system->className.c_str(), title.c_str(), WS_OVERLAPPED, 0, 0, width, height,
                                     nullptr, nullptr, nullptr, nullptr);
    if (!system->window) return OpenResult::windowFailed;

    // Rendering goes to framebuffers; neither the depth nor the absence of a stencil matters to it.
    PIXELFORMATDESCRIPTOR format{};
    format.nSize = sizeof(format);
    format.nVersion = 1;
    format.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER;
    format.iPixelType = PFD_TYPE_RGBA;
    format.cColorBits = 32;
    format.cDepthBits = 8;
    system->deviceContext = GetDC(system->window);
    SetPixelFormat(system->deviceContext, ChoosePixelFormat(system->deviceContext, &format), &format);
    system->renderContext = wglCreateContext(system->deviceContext);
    wglMakeCurrent(system->deviceContext, system->renderContext);
    return OpenResult::opened;
}

bool GLWindow::close() {
    if (system->renderContext) {
        wglMakeCurrent(nullptr, nullptr);
        if (!wglDeleteContext(system->renderContext)) return false;
        system->renderContext = nullptr;
    }
    if (system->deviceContext) {
        ReleaseDC(system->window, system->deviceContext);
        system->deviceContext = nullptr;
    }
    // Fails as long as the window lives, which is of no consequence: its name is never drawn again.
    UnregisterClassW(system->className.c_str(), nullptr);
    return true;
}

bool GLWindow::makeCurrent() {
    // Without a context the system would take the call for "none shall be current", and succeed.
    return system->renderContext && noted(wglMakeCurrent(system->deviceContext, system->renderContext));
}

void GLWindow::clearCurrent() {
    noted(wglMakeCurrent(system->deviceContext, nullptr));
}

void GLWindow::swapBuffers() {
    SwapBuffers(system->deviceContext);
}

}  // namespace quillon
