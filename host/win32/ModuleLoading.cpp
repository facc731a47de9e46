#include "host/ModuleLoading.h"

#include <windows.h>

#include <iterator>

namespace quillon::host {

namespace {

// The system's words for an error, UTF-8, without their full stop.
std::string WordsOf(DWORD error) {
    wchar_t words[512];
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, words,
                                  std::size(words), nullptr);
    while (length > 0 && (words[length - 1] <= L' ' || words[length - 1] == L'.')) --length;
    char bytes[3 * std::size(words)];
    const int count =
        WideCharToMultiByte(CP_UTF8, 0, words, static_cast<int>(length), bytes, sizeof bytes, nullptr, nullptr);
    return count > 0 ? std::string(bytes, static_cast<std::size_t>(count)) : "error " + std::to_string(error);
}

}  // namespace

void* LoadModule(const std::filesystem::path& file, std::string& reason) {
    // The system shows a box for some damaged modules unless it is asked not to. An absolute name is not searched for,
    // and lets the module's own folder serve what it needs.
    DWORD errorMode = 0;
    SetThreadErrorMode(SEM_FAILCRITICALERRORS, &errorMode);
    const std::filesystem::path name = std::filesystem::absolute(file).make_preferred();
    const HMODULE module = LoadLibraryExW(name.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!module) reason = WordsOf(GetLastError());
    SetThreadErrorMode(errorMode, nullptr);
    return module;
}

void* FindInModule(void* module, const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), name));
}

void UnloadModule(void* module) {
    FreeLibrary(static_cast<HMODULE>(module));
}

}  // namespace quillon::host
