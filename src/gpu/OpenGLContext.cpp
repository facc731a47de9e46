#include "gpu/OpenGLContext.h"

#include <array>
#include <chrono>
#include <cstdlib>
#include <cwchar>

namespace quillon {

namespace {

// The window is never shown, and all rendering goes to framebuffers: its size has no effect.
constexpr int kWindowWidth = 640;
constexpr int kWindowHeight = 360;

constexpr std::int32_t kWindowFault = 1;
constexpr std::int32_t kDeleteFault = 2;
constexpr int kNoDisplay = 1;

// Milliseconds since an arbitrary moment; wraps after 49 days.
std::uint32_t TickMilliseconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

// Four hex digits: some systems draw from a wider range than the 15 bits that are meant.
std::wstring RandomSuffix() {
    std::array<wchar_t, 8> digits{};
    std::swprintf(digits.data(), digits.size(), L"%04x", static_cast<unsigned>(std::rand() & 0x7FFF));
    return digits.data();
}

}  // namespace

int OpenGLContext::create() {
    std::srand(TickMilliseconds());
    className = L"Quillon2_Class" + RandomSuffix();
    windowName = L"OpenGL_WND" + RandomSuffix();
    mutexName = L"OpenGL_MTX" + RandomSuffix();

    switch (window.open(className, windowName, kWindowWidth, kWindowHeight)) {
        case GLWindow::OpenResult::opened:
            return 0;
        case GLWindow::OpenResult::windowFailed:
            throw OpenGLFault{kWindowFault};
        case GLWindow::OpenResult::noDisplay:
            break;
    }
    return kNoDisplay;
}

int OpenGLContext::destroy() {
    if (!window.close()) throw OpenGLFault{kDeleteFault};
    return 0;
}

int OpenGLContext::makeCurrent() {
    return window.makeCurrent() ? 0 : kMakeCurrentFailed;
}

void OpenGLContext::clearCurrent() {
    window.clearCurrent();
}

bool OpenGLContext::waitLock() {
    return mutex.lock();
}

void OpenGLContext::releaseLock() {
    mutex.unlock();
}

void OpenGLContext::swapBuffers() {
    window.swapBuffers();
}

}  // namespace quillon
