// Counts what the program allocates by standing in for the global allocation functions.

#include "HeapUse.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

std::size_t held = 0;
std::size_t most = 0;

// Stands before every block, and keeps its alignment.
struct alignas(std::max_align_t) BlockSize {
    std::size_t bytes;
};

}  // namespace

void* operator new(std::size_t bytes) {
    auto* block = static_cast<BlockSize*>(std::malloc(sizeof(BlockSize) + bytes));
    if (!block) throw std::bad_alloc();
    block->bytes = bytes;
    held += bytes;
    most = std::max(most, held);
    return block + 1;
}

void operator delete(void* pointer) noexcept {
    if (!pointer) return;
    auto* block = static_cast<BlockSize*>(pointer) - 1;
    held -= block->bytes;
    std::free(block);
}

void operator delete(void* pointer, std::size_t) noexcept {
    operator delete(pointer);
}

namespace quillon::bench {

HeapUse::HeapUse() : before(held) {
    most = held;
}

std::size_t HeapUse::peak() const {
    return most - before;
}

}  // namespace quillon::bench
