#include "cli/system/ParentPipe.h"

#include <fcntl.h>

#include <csignal>

#include "cli/system/posix/PipeBytes.h"

namespace quillon::cli {

struct ParentPipe::System {
    int input;
    int output;
};

ParentPipe::ParentPipe() : system(std::make_unique<System>()) {
    std::signal(SIGPIPE, SIG_IGN);
    system->input = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    system->output = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    dup2(STDERR_FILENO, STDOUT_FILENO);
}

ParentPipe::~ParentPipe() {
    close(system->input);
    close(system->output);
}

std::size_t ParentPipe::read(std::span<std::byte> bytes) {
    return ReadAll(system->input, bytes);
}

bool ParentPipe::write(std::span<const std::byte> bytes) {
    return WriteAll(system->output, bytes);
}

}  // namespace quillon::cli
