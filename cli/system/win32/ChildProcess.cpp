#include "cli/system/ChildProcess.h"

#include <windows.h>

#include <cerrno>
#include <system_error>
#include <thread>

#include "cli/system/win32/PipeBytes.h"
#include "platform/Utf8Path.h"

namespace quillon::cli {

namespace {

constexpr std::size_t kMostWords = 2000;

// As programs take their command line apart: backslashes count only in front of a double quote.
std::string Quoted(const std::string& argument) {
    std::string quoted = "\"";
    std::size_t backslashes = 0;
    for (const char c : argument) {
        if (c == '"') quoted.append(backslashes + 1, '\\');
        backslashes = c == '\\' ? backslashes + 1 : 0;
        quoted += c;
    }
    return quoted.append(backslashes, '\\') + "\"";
}

// Closes at its end.
class Handle {
public:
    Handle() = default;
    explicit Handle(HANDLE opened) : handle(opened) {}
    ~Handle() { close(); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    void close() {
        if (handle && handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
        handle = nullptr;
    }

    HANDLE handle = nullptr;
};

SECURITY_ATTRIBUTES Inheritable() {
    return {sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
}

// The end that this process keeps is not the child's.
void MakePipe(Handle& read, Handle& write, Handle& kept) {
    SECURITY_ATTRIBUTES attributes = Inheritable();
    if (!CreatePipe(&read.handle, &write.handle, &attributes, 0))
        throw std::system_error(EMFILE, std::generic_category());
    SetHandleInformation(kept.handle, HANDLE_FLAG_INHERIT, 0);
}

}  // namespace

struct ChildProcess::System {
    Handle process;
    Handle toChild;
    Handle fromChild;
    Handle wordsRead;
    std::string words;
    std::thread listener;
};

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& arguments, Pipe direction)
    : system(std::make_unique<System>()) {
    Handle childInput, childOutput, wordsWrite;
    if (direction != Pipe::fromChild) MakePipe(childInput, system->toChild, system->toChild);
    if (direction != Pipe::toChild) MakePipe(system->fromChild, childOutput, system->fromChild);
    MakePipe(system->wordsRead, wordsWrite, system->wordsRead);
    SECURITY_ATTRIBUTES attributes = Inheritable();
    const Handle nowhere(CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                     &attributes, OPEN_EXISTING, 0, nullptr));
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = childInput.handle ? childInput.handle : nowhere.handle;
    startup.hStdOutput = childOutput.handle ? childOutput.handle : nowhere.handle;
    startup.hStdError = wordsWrite.handle;

    std::string command = Quoted(program);
    for (const std::string& argument : arguments) command += " " + Quoted(argument);
    std::wstring wide = PathFromUtf8(command).wstring();
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, wide.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process))
        throw std::system_error(GetLastError() == ERROR_FILE_NOT_FOUND ? ENOENT : EACCES, std::generic_category());
    CloseHandle(process.hThread);
    system->process.handle = process.hProcess;
    system->listener = std::thread([&kept = system->words, file = system->wordsRead.handle] {
        char bytes[512];
        DWORD count = 0;
        while (ReadFile(file, bytes, sizeof(bytes), &count, nullptr) && count > 0) {
            kept.append(bytes, count);
            if (kept.size() > kMostWords) kept.erase(0, kept.size() - kMostWords);
        }
    });
}

ChildProcess::~ChildProcess() {
    end();
    wait();
}

bool ChildProcess::write(std::span<const std::byte> bytes) {
    return WriteAll(system->toChild.handle, bytes);
}

std::size_t ChildProcess::read(std::span<std::byte> bytes) {
    return ReadAll(system->fromChild.handle, bytes);
}

void ChildProcess::end() {
    if (system->process.handle) TerminateProcess(system->process.handle, 1);
}

int ChildProcess::wait() {
    system->toChild.close();
    system->fromChild.close();
    if (!system->process.handle) return -1;
    WaitForSingleObject(system->process.handle, INFINITE);
    DWORD status = 0;
    GetExitCodeProcess(system->process.handle, &status);
    system->process.close();
    system->listener.join();
    return static_cast<int>(status);
}

const std::string& ChildProcess::lastWords() const {
    return system->words;
}

}  // namespace quillon::cli
