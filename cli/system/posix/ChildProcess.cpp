#include "cli/system/ChildProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>
#include <thread>

#include "cli/system/posix/PipeBytes.h"

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

void Close(int& end) {
    if (end >= 0) close(end);
    end = -1;
}

}  // namespace

struct ChildProcess::System {
    pid_t id = -1;
    int toChild = -1;
    int fromChild = -1;
    std::string words;
    std::thread listener;
};

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& arguments, Pipe direction)
    : system(std::make_unique<System>()) {
    // A child that ends early is seen by what write() returns.
    std::signal(SIGPIPE, SIG_IGN);
    PipeEnds input = direction != Pipe::fromChild ? MakePipe() : PipeEnds{};
    PipeEnds output = direction != Pipe::toChild ? MakePipe() : PipeEnds{};
    PipeEnds words = MakePipe();
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    const auto connect = [&files](int end, int stream, int access) {
        if (end >= 0)
            posix_spawn_file_actions_adddup2(&files, end, stream);
        else
            posix_spawn_file_actions_addopen(&files, stream, "/dev/null", access, 0);
    };
    connect(input.read, STDIN_FILENO, O_RDONLY);
    connect(output.write, STDOUT_FILENO, O_WRONLY);
    connect(words.write, STDERR_FILENO, O_WRONLY);
    // Libraries open sockets that would be passed on.
    posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
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
    Close(input.read);
    Close(output.write);
    Close(words.write);
    system->toChild = input.write;
    system->fromChild = output.read;
    if (error != 0) {
        system->id = -1;
        Close(words.read);
        Close(system->toChild);
        Close(system->fromChild);
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
    end();
    wait();
}

bool ChildProcess::write(std::span<const std::byte> bytes) {
    return WriteAll(system->toChild, bytes);
}

std::size_t ChildProcess::read(std::span<std::byte> bytes) {
    return ReadAll(system->fromChild, bytes);
}

void ChildProcess::end() {
    if (system->id > 0) kill(system->id, SIGTERM);
}

int ChildProcess::wait() {
    Close(system->toChild);
    Close(system->fromChild);
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
