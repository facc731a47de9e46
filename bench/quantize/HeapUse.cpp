// Counts what the program allocates, by replacing the global allocation functions. They are not inlined: the compiler
// would see a block that was moved by its header and call it a mistake.

#include "HeapUse.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

std::size_t held = 0;
std::size_t most = 0;

// Comes before every block, and keeps its alignment.
struct alignas(std::max_align_t) BlockSize {
    std::size_t bytes;
};

}  // namespace

[[gnu::noinline]] void* operator new(std::size_t bytes) {
    auto* block = static_cast<BlockSize*>(std::malloc(sizeof(BlockSize) + bytes));
    if (!block) throw std::bad_alloc();
    block->bytes = bytes;
    held += bytes;
    most = std::max(most, held);
    return block + 1;
}

[[gnu::noinline]] void operator delete(void* pointer) noexcept {
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
