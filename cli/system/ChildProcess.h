#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace quillon::cli {

// A program that runs beside this one, found along PATH, without a shell in between. Its words for the user are kept.
// One thread at a time; a second one may read() while the first writes or ends it.
class ChildProcess {
public:
    enum class Pipe {
        toChild,    // to its standard input; its standard output goes nowhere
        fromChild,  // from its standard output; its standard input is empty
        both
    };

    // Throws std::system_error when it cannot be started: ENOENT when there is no such program.
    ChildProcess(const std::string& program, const std::vector<std::string>& arguments, Pipe pipe);
    // Ends it unless it has ended.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // False when it reads no more.
    bool write(std::span<const std::byte> bytes);
    // Fills the bytes; returns fewer only where its output ends.
    std::size_t read(std::span<std::byte> bytes);

    // Asks it to end, on Windows without asking; wait() follows.
    void end();
    // Closes the pipes and waits for its end. Its exit status; -1 when a signal ended it.
    int wait();
    // The end of what it has printed on standard error, after wait().
    const std::string& lastWords() const;

private:
    struct System;
    std::unique_ptr<System> system;
};

}  // namespace quillon::cli
