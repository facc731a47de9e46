#include "../WindowSystemCalls.h"

#include <EGL/egl.h>
#include <dlfcn.h>
#include <stdlib.h>

#include <initializer_list>

namespace {

bool refusesContexts = false;

}  // namespace

// This program's own takes the place of the system's.
extern "C" EGLContext eglCreateContext(EGLDisplay display, EGLConfig config, EGLContext shared, const EGLint* list) {
    using Create = EGLContext(EGLDisplay, EGLConfig, EGLContext, const EGLint*);
    static const auto kCreate = reinterpret_cast<Create*>(dlsym(RTLD_NEXT, "eglCreateContext"));
    return refusesContexts ? EGL_NO_CONTEXT : kCreate(display, config, shared, list);
}

namespace quillon::test {

void LoseWindowSystem() {
    for (const char* variable : {"__EGL_VENDOR_LIBRARY_FILENAMES", "LIBGL_DRIVERS_PATH"})
        setenv(variable, "none", /*overwrite=*/1);
}

void RefuseContexts(bool refused) {
    refusesContexts = refused;
}

}  // namespace quillon::test
