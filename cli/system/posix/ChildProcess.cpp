#include "cli/system/ChildProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>
#include <thread>

namespace quillon::cli {

namespace {

constexpr std::size_t kMostWords = 2000;

struct PipeEnds {
    int read = -1;
    int write = -1;
};

PipeEnds MakePipe() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category());
    return {ends[0], ends[1]};
}

}  // namespace

struct ChildProcess::System {
    pid_t id = -1;
    int pipe = -1;
    std::string words;
    std::thread listener;

    void closePipe() {
        if (pipe >= 0) close(pipe);
        pipe = -1;
    }
};

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& arguments, Pipe direction)
    : system(std::make_unique<System>()) {
    // A child that ends early is seen by what write() returns.
    std::signal(SIGPIPE, SIG_IGN);
    const bool isToChild = direction == Pipe::toChild;
    const PipeEnds data = MakePipe(), words = MakePipe();
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, isToChild ? data.read : data.write, isToChild ? 0 : 1);
    posix_spawn_file_actions_addopen(&files, isToChild ? 1 : 0, "/dev/null", isToChild ? O_WRONLY : O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&files, words.write, 2);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t defaults;
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &defaults);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);

    std::vector<char*> texts = {const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments) texts.push_back(const_cast<char*>(argument.c_str()));
    texts.push_back(nullptr);
    const int error = posix_spawnp(&system->id, program.c_str(), &files, &attributes, texts.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    posix_spawnattr_destroy(&attributes);
    close(isToChild ? data.read : data.write);
    close(words.write);
    system->pipe = isToChild ? data.write : data.read;
    if (error != 0) {
        system->id = -1;
        close(words.read);
        system->closePipe();
        throw std::system_error(error, std::generic_category());
    }
    system->listener = std::thread([&kept = system->words, file = words.read] {
        char bytes[512];
        ssize_t count = 0;
        while ((count = ::read(file, bytes, sizeof(bytes))) > 0) {
            kept.append(bytes, static_cast<std::size_t>(count));
            if (kept.size() > kMostWords) kept.erase(0, kept.size() - kMostWords);
        }
        close(file);
    });
}

ChildProcess::~ChildProcess() {
    if (system->id > 0) kill(system->id, SIGTERM);
    wait();
}

bool ChildProcess::write(std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(system->pipe, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return false;
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

std::size_t ChildProcess::read(std::span<std::byte> bytes) {
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const ssize_t count = ::read(system->pipe, bytes.data() + filled, bytes.size() - filled);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;
        filled += static_cast<std::size_t>(count);
    }
    return filled;
}

int ChildProcess::wait() {
    system->closePipe();
    if (system->id <= 0) return -1;
    int status = 0;
    while (waitpid(system->id, &status, 0) < 0 && errno == EINTR) {
    }
    system->id = -1;
    system->listener.join();
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

const std::string& ChildProcess::lastWords() const {
    return system->words;
}

}  // namespace quillon::cli
