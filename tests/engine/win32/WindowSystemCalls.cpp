#include "../WindowSystemCalls.h"

#include <windows.h>

namespace {

int swaps = 0;
bool refusesContexts = false;
bool refusesWindows = false;

template <class Function>
Function* systemFunction(const wchar_t* library, const char* name) {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(library), name)));
}

BOOL WINAPI countingSwap(HDC device) {
    static const auto swap = systemFunction<BOOL WINAPI(HDC)>(L"gdi32", "SwapBuffers");
    ++swaps;
    return swap(device);
}

HGLRC WINAPI refusingCreate(HDC device) {
    static const auto create = systemFunction<HGLRC WINAPI(HDC)>(L"opengl32", "wglCreateContext");
    return refusesContexts ? nullptr : create(device);
}

HWND WINAPI refusingWindow(DWORD exStyle, LPCWSTR name, LPCWSTR title, DWORD style, int x, int y, int width, int height,
                           HWND parent, HMENU menu, HINSTANCE instance, void* parameter) {
    static const auto create = systemFunction<decltype(CreateWindowExW)>(L"user32", "CreateWindowExW");
    if (refusesWindows) return nullptr;
    return create(exStyle, name, title, style, x, y, width, height, parent, menu, instance, parameter);
}

}  // namespace

// This program's own take the places of the import libraries'.
extern "C" {
BOOL(WINAPI* __imp_SwapBuffers)(HDC) = countingSwap;
HGLRC(WINAPI* __imp_wglCreateContext)(HDC) = refusingCreate;
decltype(&CreateWindowExW) __imp_CreateWindowExW = refusingWindow;
}

namespace quillon::test {

int bufferSwaps() {
    return swaps;
}

void loseWindowSystem() {
    refusesWindows = true;
}

void refuseContexts(bool refused) {
    refusesContexts = refused;
}

}  // namespace quillon::test
