#include <cstdio>
#include <exception>
#include <new>

#include "cli/commands/CommandLine.h"
#include "cli/diagnostics/ToolError.h"
#include "cli/system/System.h"
#include "platform/TemporaryPath.h"

namespace {

using namespace quillon::cli;

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
    try {
        PrepareProcess();
        try {
            return Run(argc, argv);
        } catch (const ToolError& error) {
            PrintDiagnostics(error.faults);
            return error.exitStatus;
        }
    } catch (const std::bad_alloc&) {
        quillon::RemoveTemporaries();
        std::fputs("quillon: error: out of memory\n", stderr);  // no memory is left for more words
        return 1;
    }
}
