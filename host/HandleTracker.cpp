#include "host/HandleTracker.h"

#include <algorithm>
#include <cstring>

namespace quillon::host {

namespace {

constexpr char kFreshByte = '\x5A';
constexpr char kHandleGuard = '\x3C';
constexpr std::size_t kGuardBytes = 16;
constexpr std::size_t kEndedKept = 4096;

}  // namespace

PF_Handle HandleTracker::make(std::size_t bytes) {
    auto block = std::make_unique<Block>();
    block->memory = std::make_unique_for_overwrite<char[]>(bytes + kGuardBytes);
    block->data = block->memory.get();
    block->size = bytes;
    block->locks = 0;
    std::memset(block->data, kFreshByte, bytes);
    std::memset(block->data + bytes, kHandleGuard, kGuardBytes);
    const PF_Handle handle = &block->data;
    const std::lock_guard lock(mutex);
    blocks[handle] = std::move(block);
    return handle;
}

PF_Handle HandleTracker::makeWith(std::span<const std::byte> bytes) {
    const PF_Handle handle = make(bytes.size());
    std::memcpy(*handle, bytes.data(), bytes.size());
    return handle;
}

HandleTracker::Block* HandleTracker::find(PF_Handle handle) const {
    const auto found = blocks.find(handle);
    return found == blocks.end() ? nullptr : found->second.get();
}

void* HandleTracker::lock(PF_Handle handle, std::string& fault) {
    const std::lock_guard lock(mutex);
    Block* const block = find(handle);
    if (!block || !block->data) {
        fault = block ? "a disposed handle is locked" : "a handle that the host did not make is locked";
        return nullptr;
    }
    ++block->locks;
    return block->data;
}

void HandleTracker::unlock(PF_Handle handle, std::string& fault) {
    const std::lock_guard lock(mutex);
    Block* const block = find(handle);
    if (!block || !block->data) {
        fault = block ? "a disposed handle is unlocked" : "a handle that the host did not make is unlocked";
    } else if (block->locks == 0) {
        fault = "a handle is unlocked that is not locked";
    } else {
        --block->locks;
    }
}

void HandleTracker::dispose(PF_Handle handle, std::string& fault) {
    const std::lock_guard lock(mutex);
    Block* const block = find(handle);
    if (!block) {
        fault = "a handle that the host did not make is disposed";
    } else if (!block->data) {
        fault = "a handle is disposed twice";
    } else {
        if (block->locks != 0) fault = "a handle is disposed while locked";
        const char* const guards = block->data + block->size;
        if (!std::all_of(guards, guards + kGuardBytes, [](char byte) { return byte == kHandleGuard; }))
            fault = "bytes after a handle's memory are overwritten";
        end(*block);
    }
}

void HandleTracker::disposeIfAlive(PF_Handle handle) {
    const std::lock_guard lock(mutex);
    Block* const block = find(handle);
    if (block && block->data) end(*block);
}

// The record stays, without its memory: a new handle must not get the address at once.
void HandleTracker::end(Block& block) {
    block.memory.reset();
    ended.push_back(&block.data);
    block.data = nullptr;
    if (ended.size() <= kEndedKept) return;
    blocks.erase(ended.front());
    ended.pop_front();
}

bool HandleTracker::isAlive(PF_Handle handle) const {
    const std::lock_guard lock(mutex);
    const Block* const block = find(handle);
    return block && block->data;
}

int HandleTracker::lockCount(PF_Handle handle) const {
    const std::lock_guard lock(mutex);
    const Block* const block = find(handle);
    return block && block->data ? block->locks : 0;
}

std::size_t HandleTracker::size(PF_Handle handle) const {
    const std::lock_guard lock(mutex);
    const Block* const block = find(handle);
    return block && block->data ? block->size : 0;
}

std::vector<std::byte> HandleTracker::bytes(PF_Handle handle) const {
    const std::lock_guard lock(mutex);
    const Block* const block = find(handle);
    if (!block || !block->data) return {};
    const auto* const first = reinterpret_cast<const std::byte*>(block->data);
    return {first, first + block->size};
}

std::size_t HandleTracker::aliveCount() const {
    const std::lock_guard lock(mutex);
    return blocks.size() - ended.size();
}

}  // namespace quillon::host
