#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>

namespace quillon::cli {

// Memory that this process and its workers see. A picture in a pipe is copied twice, a few pages at a time; here it is
// written once. Both processes agree by other means on who writes when. Nothing of it stays after them.
class SharedMemory {
public:
    // New memory, all 0. Throws std::system_error when there is too little.
    explicit SharedMemory(std::size_t size);
    // The memory that another process of this user keeps by this name. Throws std::system_error when that is missing or
    // smaller than `size`, and when it could shrink while it is in use.
    SharedMemory(std::string name, std::size_t size);
    ~SharedMemory();
    SharedMemory(const SharedMemory&) = delete;
    SharedMemory& operator=(const SharedMemory&) = delete;

    // For another process, while this object lives. No other memory of this process ever has it.
    const std::string& name() const { return ownName; }
    std::span<std::byte> bytes() const { return mapped; }

private:
    struct System;
    std::unique_ptr<System> system;
    std::string ownName;
    std::span<std::byte> mapped;
};

}  // namespace quillon::cli
