#pragma once

#include <cstddef>
#include <memory>
#include <span>

namespace quillon::cli {

// Standard input and output as pipes to the program that has started this one, see ChildProcess. One a process, and one
// thread each way.
class ParentPipe {
public:
    // From now on only this object writes there; what else is printed goes to standard error.
    ParentPipe();
    ~ParentPipe();
    ParentPipe(const ParentPipe&) = delete;
    ParentPipe& operator=(const ParentPipe&) = delete;

    // Fills the bytes; returns fewer only where the input ends: the other program has ended, or wants this one to.
    std::size_t read(std::span<std::byte> bytes);
    // False when the other program reads no more.
    bool write(std::span<const std::byte> bytes);

private:
    struct System;
    std::unique_ptr<System> system;
};

}  // namespace quillon::cli
