#include "host/ModuleLoading.h"

#include <windows.h>

#include <system_error>

namespace quillon::host {

void* loadModule(const std::filesystem::path& file, std::string& reason) {
    // The system shows a box for some damaged modules unless told not to. An absolute name is not searched for, and
    // lets the module's own folder serve what it needs.
    DWORD errorMode = 0;
    SetThreadErrorMode(SEM_FAILCRITICALERRORS, &errorMode);
    const std::filesystem::path name = std::filesystem::absolute(file).make_preferred();
    const HMODULE module = LoadLibraryExW(name.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!module) reason = std::system_category().message(static_cast<int>(GetLastError()));
    SetThreadErrorMode(errorMode, nullptr);
    return module;
}

void* findInModule(void* module, const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), name));
}

void unloadModule(void* module) {
    FreeLibrary(static_cast<HMODULE>(module));
}

}  // namespace quillon::host
