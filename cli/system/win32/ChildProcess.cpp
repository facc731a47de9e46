#include "cli/system/ChildProcess.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
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

// What the child reads. The end that this process keeps is not inherited.
void MakePipeToChild(Handle& childEnd, Handle& ownEnd) {
    SECURITY_ATTRIBUTES attributes = Inheritable();
    if (!CreatePipe(&childEnd.handle, &ownEnd.handle, &attributes, 0))
        throw std::system_error(EMFILE, std::generic_category());
    SetHandleInformation(ownEnd.handle, HANDLE_FLAG_INHERIT, 0);
}

// What the child writes. It has a name, since only pipes with a name can be waited for.
void MakePipeFromChild(Handle& childEnd, Handle& ownEnd) {
    static std::atomic<unsigned> number{0};
    const std::wstring name =
        L"\\\\.\\pipe\\quillon-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(number++);
    constexpr DWORD kBuffer = 1 << 16;
    ownEnd.handle =
        CreateNamedPipeW(name.c_str(), PIPE_ACCESS_INBOUND | FILE_FLAG_OVERLAPPED | FILE_FLAG_FIRST_PIPE_INSTANCE,
                         PIPE_TYPE_BYTE | PIPE_WAIT | PIPE_REJECT_REMOTE_CLIENTS, 1, kBuffer, kBuffer, 0, nullptr);
    SECURITY_ATTRIBUTES attributes = Inheritable();
    childEnd.handle = CreateFileW(name.c_str(), GENERIC_WRITE, 0, &attributes, OPEN_EXISTING, 0, nullptr);
    if (ownEnd.handle == INVALID_HANDLE_VALUE || childEnd.handle == INVALID_HANDLE_VALUE)
        throw std::system_error(EMFILE, std::generic_category());
}

// Some bytes of a pipe that this process writes into. None where it ends, which it also does with the process: one that
// a driver or the system has started for it may keep the pipe open for much longer.
std::size_t ReadSome(HANDLE pipe, HANDLE process, std::span<std::byte> bytes) {
    const Handle event(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    OVERLAPPED request{};
    request.hEvent = event.handle;
    DWORD count = 0;
    const auto size = static_cast<DWORD>(std::min(bytes.size(), kMostAtOnce));
    if (!ReadFile(pipe, bytes.data(), size, nullptr, &request) && GetLastError() != ERROR_IO_PENDING) return 0;
    const HANDLE awaited[] = {event.handle, process};
    if (WaitForMultipleObjects(2, awaited, FALSE, INFINITE) != WAIT_OBJECT_0) CancelIo(pipe);
    return GetOverlappedResult(pipe, &request, &count, TRUE) ? count : 0;
}

}  // namespace

struct ChildProcess::System {
    Handle process;
    Handle toChild;
    Handle fromChild;
    Handle words;
    std::string lastWords;
    std::thread listener;
};

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& arguments, Pipe direction)
    : system(std::make_unique<System>()) {
    Handle childInput, childOutput, wordsWrite;
    if (direction != Pipe::fromChild) MakePipeToChild(childInput, system->toChild);
    if (direction != Pipe::toChild) MakePipeFromChild(childOutput, system->fromChild);
    MakePipeFromChild(wordsWrite, system->words);
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
    system->listener = std::thread([from = system.get()] {
        char bytes[512];
        std::string& kept = from->lastWords;
        while (const std::size_t count =
                   ReadSome(from->words.handle, from->process.handle, std::as_writable_bytes(std::span(bytes)))) {
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
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const std::size_t count = ReadSome(system->fromChild.handle, system->process.handle, bytes.subspan(filled));
        if (count == 0) break;
        filled += count;
    }
    return filled;
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
    system->listener.join();
    system->process.close();
    return static_cast<int>(status);
}

const std::string& ChildProcess::lastWords() const {
    return system->lastWords;
}

}  // namespace quillon::cli
