#include <cstdio>
#include <exception>
#include <new>

#include "cli/commands/CommandLine.h"
#include "cli/diagnostics/ToolError.h"
#include "cli/system/System.h"

int main(int argc, char** argv) {
    using namespace quillon::cli;
    PrepareProcess();
    try {
        return RunCommandLine(ProgramArguments(argc, argv));
    } catch (const ToolError& error) {
        std::fputs(error.text.c_str(), stderr);
        return error.exitStatus;
    } catch (const std::bad_alloc&) {
        std::fputs("quillon: error: out of memory; use smaller pictures or fewer bits per channel\n", stderr);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quillon: error: %s\n", error.what());
    }
    return kFault;
}
