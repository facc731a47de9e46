#include "cli/system/ParentPipe.h"

#include <fcntl.h>

#include <csignal>

#include "cli/system/posix/PipeBytes.h"

namespace quillon::cli {

struct ParentPipe::System {
    int input;
    int output;
};

namespace {

// A picture goes through in a few steps. The system may refuse it.
constexpr int kPipeBytes = 1 << 20;

}  // namespace

ParentPipe::ParentPipe() : system(std::make_unique<System>()) {
    std::signal(SIGPIPE, SIG_IGN);
    system->input = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    system->output = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    fcntl(system->output, F_SETPIPE_SZ, kPipeBytes);
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
