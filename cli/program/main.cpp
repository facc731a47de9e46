#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

#include "cli/commands/CommandLine.h"
#include "cli/diagnostics/ToolError.h"
#include "cli/system/System.h"
#include "platform/TemporaryPath.h"

namespace {

using namespace quillon::cli;

std::atomic<bool> wasMemoryRefused = false;

// No memory is left for more words.
[[noreturn]] void EndOutOfMemory() {
    quillon::RemoveTemporaries();
    std::fputs("quillon: error: out of memory\n", stderr);
    std::_Exit(kFault);
}

// Parts of the standard library that must not throw ask for memory all the same: those that list a folder do.
void PrepareForRefusedMemory() {
    std::set_new_handler([] {
        wasMemoryRefused = true;
        throw std::bad_alloc();
    });
    static const std::terminate_handler kUsual = std::get_terminate();
    std::set_terminate([] {
        if (wasMemoryRefused) EndOutOfMemory();
        kUsual();
    });
}

int Run(int argc, char** argv) {
    try {
        return RunCommandLine(ProgramArguments(argc, argv));
    } catch (const ToolError&) {
        throw;
    } catch (const std::bad_alloc&) {
        throw Fault("", "out of memory", "use smaller pictures, fewer bits per channel or a smaller effect");
    } catch (const std::exception& error) {
        throw Fault("", error.what());
    }
}

}  // namespace

int main(int argc, char** argv) {
    PrepareForRefusedMemory();
    try {
        PrepareProcess();
        try {
            return Run(argc, argv);
        } catch (const ToolError& error) {
            PrintDiagnostics(error.faults);
            return error.exitStatus;
        }
    } catch (const std::bad_alloc&) {
        EndOutOfMemory();
    }
}
