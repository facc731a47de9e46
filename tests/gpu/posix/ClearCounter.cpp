#include "../ClearCounter.h"

#include <GL/gl.h>
#include <dlfcn.h>

namespace {
int clears = 0;
}

// This program's own takes the place of the library's.
extern "C" void glClear(GLbitfield mask) {
    static const auto kClear = reinterpret_cast<void (*)(GLbitfield)>(dlsym(RTLD_NEXT, "glClear"));
    ++clears;
    kClear(mask);
}

int quillon::test::ClearCount() {
    return clears;
}
