#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "hostapi/HostApi.h"

namespace quillon::host {

// The host's memory handles. What an effect does wrong with one is reported in words through `fault`, which stays as it
// is otherwise; nothing that an effect does with a handle, known or not, damages the tracker. Any thread may call.
class HandleTracker {
public:
    // Fresh bytes are not zero. Never fails.
    PF_Handle make(std::size_t bytes);
    PF_Handle makeWith(std::span<const std::byte> bytes);

    // As the effect asks for it; lock gives the memory, null for a handle that is not alive.
    void* lock(PF_Handle handle, std::string& fault);
    void unlock(PF_Handle handle, std::string& fault);
    void dispose(PF_Handle handle, std::string& fault);

    // The host's own end of a handle: nothing happens when it is disposed already.
    void disposeIfAlive(PF_Handle handle);

    // What the host knows of a handle: 0 or nothing for one that is not alive.
    bool isAlive(PF_Handle handle) const;
    int lockCount(PF_Handle handle) const;
    std::size_t size(PF_Handle handle) const;
    std::vector<std::byte> bytes(PF_Handle handle) const;
    std::size_t aliveCount() const;

private:
    struct Block {
        char* data;  // first: a handle is the address of this field
        std::size_t size;
        int locks;
        std::unique_ptr<char[]> memory;
    };

    Block* find(PF_Handle handle) const;
    void end(Block& block);

    mutable std::mutex mutex;
    std::map<PF_Handle, std::unique_ptr<Block>> blocks;
    std::deque<PF_Handle> ended;  // kept for a while, to distinguish a second disposal from an unknown handle
};

}  // namespace quillon::host
