#include "cli/system/System.h"

#include <windows.h>
// After windows.h, whose types it needs.
#include <fcntl.h>
#include <io.h>
#include <psapi.h>
#include <shellapi.h>

#include <cstdio>
#include <cstdlib>

#include "cli/system/ModuleKind.h"
#include "platform/TemporaryPath.h"

namespace quillon::cli {

const ModuleKind& kOwnModuleKind = kModuleKinds[1];

const char* const kTemporaryVariable = "TMP";

namespace {

std::string Utf8(const wchar_t* text) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes.data(), size, nullptr, nullptr);
    bytes.resize(bytes.size() - 1);  // its end
    return bytes;
}

UINT terminalCodePage = 0;

}  // namespace

void PrepareProcess() {
    // The terminal outlives the tool, and other programs count on what it was set to.
    terminalCodePage = GetConsoleOutputCP();
    SetConsoleOutputCP(CP_UTF8);
    std::atexit([] { SetConsoleOutputCP(terminalCodePage); });
    // Results and words are the same bytes on every system.
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    RemoveTemporariesAtSignals();
    // A process that the system or a driver starts for this one may live longer. If it kept the tool's own streams
    // open, whoever reads them would wait for an end that does not come.
    for (const DWORD stream : {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE})
        SetHandleInformation(GetStdHandle(stream), HANDLE_FLAG_INHERIT, 0);
    // The progress bar erases its line by an escape sequence, and pages are styled by some.
    for (const DWORD stream : {STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
        const HANDLE terminal = GetStdHandle(stream);
        DWORD mode = 0;
        if (GetConsoleMode(terminal, &mode)) SetConsoleMode(terminal, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    }
}

std::vector<std::string> ProgramArguments(int, char**) {
    // Those of main() have lost what the system's code page does not hold.
    int count = 0;
    LPWSTR* const texts = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i) arguments.push_back(Utf8(texts[i]));
    LocalFree(texts);
    return arguments;
}

std::filesystem::path ProgramFile() {
    std::wstring name(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
        if (length < name.size()) {
            name.resize(length);
            return name;
        }
        name.resize(2 * name.size());
    }
}

void DoWithoutShaderCache() {
    SetEnvironmentVariableA("MESA_SHADER_CACHE_DISABLE", "true");
}

std::size_t ResidentBytes() {
    PROCESS_MEMORY_COUNTERS counters = {};
    return GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters) != 0 ? counters.WorkingSetSize : 0;
}

}  // namespace quillon::cli
