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

// A result of wglMakeCurrent. Reason and thread of a failure are kept for a debugger only: nothing acts on them.
bool Noted(BOOL succeeded) {
    if (succeeded) return true;
    [[maybe_unused]] const volatile DWORD reason = GetLastError();
    [[maybe_unused]] const volatile DWORD thread = GetCurrentThreadId();
    return false;
}

struct WindowOrder {
    const std::wstring& className;
    const std::wstring& title;
    int width;
    int height;
    HANDLE done;  // event
    HWND window = nullptr;
    HDC deviceContext = nullptr;
};

void MakeWindow(WindowOrder& order) {
    // Never shown. Rendering goes to framebuffers: neither the depth nor the absence of a stencil matters to it.
    order.window = CreateWindowExW(0, order.className.c_str(), order.title.c_str(), WS_OVERLAPPED, 0, 0, order.width,
                                   order.height, nullptr, nullptr, nullptr, nullptr);
    if (!order.window) return;
    PIXELFORMATDESCRIPTOR format{};
    format.nSize = sizeof(format);
    format.nVersion = 1;
    format.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER;
    format.iPixelType = PFD_TYPE_RGBA;
    format.cColorBits = 32;
    format.cDepthBits = 8;
    order.deviceContext = GetDC(order.window);
    SetPixelFormat(order.deviceContext, ChoosePixelFormat(order.deviceContext, &format), &format);
}

// The thread that owns the window. The system destroys a window with the thread that made it, and a host may end the
// thread that it starts the effect on, so this one lives until the process ends. It waits for a message that nobody
// posts. Meanwhile the system answers what is sent to all windows, as a changed setting, whose sender would otherwise
// wait for us. No code of the module runs after the start, so that a host can unload the module.
DWORD WINAPI OwnWindow(void* parameter) {
    auto& order = *static_cast<WindowOrder*>(parameter);
    MakeWindow(order);
    SetEvent(order.done);  // from here on the order is gone
    const auto threadMessagesOnly = reinterpret_cast<HWND>(static_cast<INT_PTR>(-1));
    constexpr UINT kNeverPosted = 0xBFFF;
    MSG message;
    GetMessageW(&message, threadMessagesOnly, kNeverPosted, kNeverPosted);
    Sleep(INFINITE);
    return 0;
}

// False when the system has no thread for it; the window can still be null otherwise.
bool RunWindowThread(WindowOrder& order) {
    order.done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    if (!order.done) return false;
    const HANDLE thread = CreateThread(nullptr, 0, OwnWindow, &order, 0, nullptr);
    if (thread) {
        WaitForSingleObject(order.done, INFINITE);
        CloseHandle(thread);
    }
    CloseHandle(order.done);
    return thread != nullptr;
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

    WindowOrder order{system->className, title, width, height, nullptr};
    if (!RunWindowThread(order) || !order.window) return OpenResult::windowFailed;
    system->window = order.window;
    system->deviceContext = order.deviceContext;
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
    // Fails while the window lives. That has no effect: the name of the class is not used again.
    UnregisterClassW(system->className.c_str(), nullptr);
    return true;
}

bool GLWindow::makeCurrent() {
    // Without a context the call would mean "make none current", and succeed.
    return system->renderContext && Noted(wglMakeCurrent(system->deviceContext, system->renderContext));
}

void GLWindow::clearCurrent() {
    Noted(wglMakeCurrent(system->deviceContext, nullptr));
}

void GLWindow::swapBuffers() {
    SwapBuffers(system->deviceContext);
}

}  // namespace quillon
