#include "../WindowSystemCalls.h"

#include <EGL/egl.h>
#include <dlfcn.h>
#include <stdlib.h>

#include <initializer_list>

namespace {

int swaps = 0;
bool refusesContexts = false;

}  // namespace

// The linker sends the engine's calls of this one here.
extern "C" EGLBoolean __real_eglSwapBuffers(EGLDisplay display, EGLSurface surface);
extern "C" EGLBoolean __wrap_eglSwapBuffers(EGLDisplay display, EGLSurface surface);

EGLBoolean __wrap_eglSwapBuffers(EGLDisplay display, EGLSurface surface) {
    ++swaps;
    return __real_eglSwapBuffers(display, surface);
}

// This program's own takes the place of the system's.
extern "C" EGLContext eglCreateContext(EGLDisplay display, EGLConfig config, EGLContext shared, const EGLint* list) {
    using Create = EGLContext(EGLDisplay, EGLConfig, EGLContext, const EGLint*);
    static const auto create = reinterpret_cast<Create*>(dlsym(RTLD_NEXT, "eglCreateContext"));
    return refusesContexts ? EGL_NO_CONTEXT : create(display, config, shared, list);
}

namespace quillon::test {

int bufferSwaps() {
    return swaps;
}

void loseWindowSystem() {
    for (const char* variable : {"__EGL_VENDOR_LIBRARY_FILENAMES", "LIBGL_DRIVERS_PATH"})
        setenv(variable, "none", /*overwrite=*/1);
}

void refuseContexts(bool refused) {
    refusesContexts = refused;
}

}  // namespace quillon::test
