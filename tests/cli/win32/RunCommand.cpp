#include "../RunCommand.h"

#include <windows.h>

#include <stdexcept>

#include "platform/Utf8Path.h"

namespace quillon::test {

namespace {

// A file that a program which is started inherits.
class InheritedFile {
public:
    InheritedFile(const std::filesystem::path& path, DWORD access, DWORD creation) {
        SECURITY_ATTRIBUTES inherited{sizeof(inherited), nullptr, TRUE};
        file = CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, creation,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
    }
    ~InheritedFile() { CloseHandle(file); }
    InheritedFile(const InheritedFile&) = delete;
    InheritedFile& operator=(const InheritedFile&) = delete;

    HANDLE handle() const { return file; }

private:
    HANDLE file = INVALID_HANDLE_VALUE;
};

}  // namespace

// Without the system's shell, which would take part of the words for itself.
int RunCommand(const std::filesystem::path& folder, const std::filesystem::path& printed,
               const std::string& environment, const std::string& program, const std::string& arguments) {
    const std::wstring name = PathFromUtf8(program).make_preferred().wstring();
    std::wstring command = L"\"" + name + L"\" " + PathFromUtf8(arguments).wstring();
    const InheritedFile input("NUL", GENERIC_READ, OPEN_EXISTING);
    const InheritedFile output(printed / "out", GENERIC_WRITE, CREATE_ALWAYS);
    const InheritedFile words(printed / "err", GENERIC_WRITE, CREATE_ALWAYS);

    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = input.handle();
    startup.hStdOutput = output.handle();
    startup.hStdError = words.handle();
    const std::size_t equals = environment.find('=');
    if (!environment.empty())
        SetEnvironmentVariableA(environment.substr(0, equals).c_str(), environment.substr(equals + 1).c_str());
    PROCESS_INFORMATION process{};
    const bool isStarted = CreateProcessW(name.c_str(), command.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                          folder.c_str(), &startup, &process) != 0;
    if (!environment.empty()) SetEnvironmentVariableA(environment.substr(0, equals).c_str(), nullptr);
    if (!isStarted) throw std::runtime_error(program + ": cannot be started, error " + std::to_string(GetLastError()));
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD status = 0;
    GetExitCodeProcess(process.hProcess, &status);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return static_cast<int>(status);
}

}  // namespace quillon::test
