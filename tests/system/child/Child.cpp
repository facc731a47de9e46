#include <cstdio>

#include "cli/system/ParentPipe.h"
#include "cli/system/System.h"
#include "platform/LittleEndian.h"

// What the tests of child processes run. "arguments" prints the others, each on a line, and ends with 7. "echo" takes a
// size of 8 bytes and as many bytes, and gives them back. "wait" does so until its input ends.

int main(int argc, char** argv) {
    using namespace quillon;
    cli::PrepareProcess();
    const std::vector<std::string> arguments = cli::ProgramArguments(argc, argv);
    if (arguments.at(0) == "arguments") {
        for (std::size_t i = 1; i < arguments.size(); ++i) std::printf("%s\n", arguments[i].c_str());
        std::fprintf(stderr, "last words");
        return 7;
    }
    cli::ParentPipe pipe;
    std::printf("this is for standard error");
    std::fflush(stdout);
    std::vector<std::byte> bytes(8);
    if (pipe.read(bytes) != bytes.size()) return 1;
    if (arguments[0] == "echo") {
        bytes.resize(LoadLittle<std::uint64_t>(bytes, 0));
        return pipe.read(bytes) == bytes.size() && pipe.write(bytes) ? 0 : 2;
    }
    while (pipe.read(bytes) == bytes.size()) {
    }
    return 3;
}
