#include "../WindowSystemCalls.h"

#include <windows.h>

namespace {

bool refusesContexts = false;
bool refusesWindows = false;

template <class Function>
Function* SystemFunction(const wchar_t* library, const char* name) {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(library), name)));
}

HGLRC WINAPI RefusingCreate(HDC device) {
    static const auto kCreate = SystemFunction<HGLRC WINAPI(HDC)>(L"opengl32", "wglCreateContext");
    return refusesContexts ? nullptr : kCreate(device);
}

HWND WINAPI RefusingWindow(DWORD exStyle, LPCWSTR name, LPCWSTR title, DWORD style, int x, int y, int width, int height,
                           HWND parent, HMENU menu, HINSTANCE instance, void* parameter) {
    static const auto kCreate = SystemFunction<decltype(CreateWindowExW)>(L"user32", "CreateWindowExW");
    if (refusesWindows) return nullptr;
    return kCreate(exStyle, name, title, style, x, y, width, height, parent, menu, instance, parameter);
}

}  // namespace

// This program's own take the places of the import libraries'.
extern "C" {
HGLRC(WINAPI* __imp_wglCreateContext)(HDC) = RefusingCreate;
decltype(&CreateWindowExW) __imp_CreateWindowExW = RefusingWindow;
}

namespace quillon::test {

void LoseWindowSystem() {
    refusesWindows = true;
}

void RefuseContexts(bool refused) {
    refusesContexts = refused;
}

}  // namespace quillon::test
