#include "../ClearCounter.h"

#include <windows.h>
// After windows.h, whose types it needs.
#include <GL/gl.h>

namespace {

int clears = 0;

void APIENTRY countingClear(GLbitfield mask) {
    using Clear = void(APIENTRY*)(GLbitfield);
    static const auto clear =
        reinterpret_cast<Clear>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"opengl32"), "glClear")));
    ++clears;
    clear(mask);
}

}  // namespace

// This program's own takes the place of the import library's.
extern "C" void(APIENTRY* __imp_glClear)(GLbitfield) = countingClear;

int quillon::test::clearCount() {
    return clears;
}
