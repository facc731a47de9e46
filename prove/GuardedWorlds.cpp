#include "GuardedWorlds.h"

#include <sys/mman.h>
#include <unistd.h>

#include <new>

namespace quillon::prove {

GuardedMemory::GuardedMemory(std::size_t bytes, bool isAtStart) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t usable = (bytes + page - 1) / page * page;
    mappedBytes = usable + 2 * page;
    void* const mapped = mmap(nullptr, mappedBytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) throw std::bad_alloc();
    mapping = static_cast<std::byte*>(mapped);
    if (mprotect(mapping + page, usable, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
    first = mapping + page + (isAtStart ? 0 : usable - bytes);
}

GuardedMemory::~GuardedMemory() {
    munmap(mapping, mappedBytes);
}

namespace {

struct GuardedRows {
    GuardedRows(A_long width, A_long height, int depth, std::ptrdiff_t stride, bool isUpward)
        : memory(static_cast<std::size_t>(stride * (height - 1) + std::ptrdiff_t{width} * depth / 2), isUpward),
          world(width, height, depth, memory.begin() + (isUpward ? stride * (height - 1) : 0),
                isUpward ? -stride : stride) {}

    GuardedMemory memory;
    host::World world;
};

}  // namespace

std::shared_ptr<host::World> GuardedWorld(A_long width, A_long height, int depth, const RowLayout& layout) {
    const std::ptrdiff_t stride = std::ptrdiff_t{width + layout.paddingPixels} * depth / 2;
    const auto rows = std::make_shared<GuardedRows>(width, height, depth, stride, layout.isUpward);
    return {rows, &rows->world};
}

}  // namespace quillon::prove
