#include "cli/system/ParentPipe.h"

#include <windows.h>
// After windows.h, whose types it needs.
#include <io.h>

#include <cstdio>

#include "cli/system/win32/PipeBytes.h"

namespace quillon::cli {

struct ParentPipe::System {
    HANDLE input;
    HANDLE output;
};

ParentPipe::ParentPipe() : system(std::make_unique<System>()) {
    system->input = GetStdHandle(STD_INPUT_HANDLE);
    // Standard output's own handle is closed when another takes its number.
    DuplicateHandle(GetCurrentProcess(), GetStdHandle(STD_OUTPUT_HANDLE), GetCurrentProcess(), &system->output, 0,
                    FALSE, DUPLICATE_SAME_ACCESS);
    _dup2(_fileno(stderr), _fileno(stdout));
    // The copy is one that other processes could inherit, see PrepareProcess().
    SetHandleInformation(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stdout))), HANDLE_FLAG_INHERIT, 0);
    SetStdHandle(STD_OUTPUT_HANDLE, GetStdHandle(STD_ERROR_HANDLE));
}

ParentPipe::~ParentPipe() {
    CloseHandle(system->output);
}

std::size_t ParentPipe::read(std::span<std::byte> bytes) {
    return ReadAll(system->input, bytes);
}

bool ParentPipe::write(std::span<const std::byte> bytes) {
    return WriteAll(system->output, bytes);
}

}  // namespace quillon::cli
