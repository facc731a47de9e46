#include "platform/GLWindow.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <array>

namespace quillon {

struct GLWindow::System {
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLSurface surface = EGL_NO_SURFACE;
    EGLContext context = EGL_NO_CONTEXT;
};

namespace {

EGLDisplay PlatformDisplay(EGLenum platform, void* nativeDisplay) {
    const auto getPlatformDisplay =
        reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(eglGetProcAddress("eglGetPlatformDisplayEXT"));
    return getPlatformDisplay ? getPlatformDisplay(platform, nativeDisplay, nullptr) : EGL_NO_DISPLAY;
}

EGLDisplay SurfacelessDisplay() {
    return PlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY);
}

EGLDisplay DeviceDisplay() {
    const auto queryDevices = reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(eglGetProcAddress("eglQueryDevicesEXT"));
    EGLDeviceEXT device = nullptr;
    EGLint count = 0;
    if (!queryDevices || !queryDevices(1, &device, &count) || count < 1) return EGL_NO_DISPLAY;
    return PlatformDisplay(EGL_PLATFORM_DEVICE_EXT, device);
}

EGLDisplay DefaultDisplay() {
    return eglGetDisplay(EGL_DEFAULT_DISPLAY);
}

constexpr std::array<EGLDisplay (*)(), 3> kDisplays = {SurfacelessDisplay, DeviceDisplay, DefaultDisplay};

}  // namespace

GLWindow::GLWindow() : system(std::make_unique<System>()) {}
GLWindow::~GLWindow() = default;

GLWindow::OpenResult GLWindow::open(const std::wstring&, const std::wstring&, int width, int height) {
    constexpr EGLint kConfigAttributes[] = {EGL_SURFACE_TYPE,
                                            EGL_PBUFFER_BIT,
                                            EGL_RENDERABLE_TYPE,
                                            EGL_OPENGL_BIT,
                                            EGL_RED_SIZE,
                                            8,
                                            EGL_GREEN_SIZE,
                                            8,
                                            EGL_BLUE_SIZE,
                                            8,
                                            EGL_ALPHA_SIZE,
                                            8,
                                            EGL_DEPTH_SIZE,
                                            8,
                                            EGL_NONE};
    const EGLint surfaceAttributes[] = {EGL_WIDTH, width, EGL_HEIGHT, height, EGL_NONE};

    // The display is the process's, not ours: it is initialized any number of times and never terminated, since
    // that would end the contexts of every other module in the process.
    for (const auto getDisplay : kDisplays) {
        const EGLDisplay display = getDisplay();
        EGLConfig config = nullptr;
        EGLint count = 0;
        if (display == EGL_NO_DISPLAY || !eglInitialize(display, nullptr, nullptr) || !eglBindAPI(EGL_OPENGL_API) ||
            !eglChooseConfig(display, kConfigAttributes, &config, 1, &count) || count < 1)
            continue;
        const EGLSurface surface = eglCreatePbufferSurface(display, config, surfaceAttributes);
        if (surface == EGL_NO_SURFACE) continue;
        system->display = display;
        system->surface = surface;
        system->context = eglCreateContext(display, config, EGL_NO_CONTEXT, nullptr);
        makeCurrent();
        return OpenResult::opened;
    }
    return OpenResult::noDisplay;
}

bool GLWindow::close() {
    if (system->context != EGL_NO_CONTEXT) {
        clearCurrent();
        if (!eglDestroyContext(system->display, system->context)) return false;
        system->context = EGL_NO_CONTEXT;
    }
    if (system->surface != EGL_NO_SURFACE) {
        eglDestroySurface(system->display, system->surface);
        system->surface = EGL_NO_SURFACE;
    }
    return true;
}

bool GLWindow::makeCurrent() {
    return system->context != EGL_NO_CONTEXT &&
           eglMakeCurrent(system->display, system->surface, system->surface, system->context);
}

void GLWindow::clearCurrent() {
    if (system->display != EGL_NO_DISPLAY)
        eglMakeCurrent(system->display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
}

void GLWindow::swapBuffers() {
    if (system->surface != EGL_NO_SURFACE) eglSwapBuffers(system->display, system->surface);
}

}  // namespace quillon
