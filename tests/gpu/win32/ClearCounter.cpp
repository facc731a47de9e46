#include "../ClearCounter.h"

#include <GL/glew.h>
#include <windows.h>

namespace {
int clears = 0;
}

// This program's own takes the place of the library's.
extern "C" void GLAPIENTRY glClear(GLbitfield mask) {
    using Clear = void(GLAPIENTRY*)(GLbitfield);
    static const auto clear =
        reinterpret_cast<Clear>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"opengl32"), "glClear")));
    ++clears;
    clear(mask);
}

int quillon::test::clearCount() {
    return clears;
}
