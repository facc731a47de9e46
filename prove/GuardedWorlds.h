#pragma once

#include <memory>

#include "host/World.h"

namespace quillon::prove {

// Memory between two pages that nobody may touch: it ends where the second one starts, or starts where the first ends.
class GuardedMemory {
public:
    GuardedMemory(std::size_t bytes, bool isAtStart);
    ~GuardedMemory();
    GuardedMemory(const GuardedMemory&) = delete;
    GuardedMemory& operator=(const GuardedMemory&) = delete;

    std::byte* begin() const { return first; }

private:
    std::byte* mapping = nullptr;
    std::size_t mappedBytes = 0;
    std::byte* first = nullptr;
};

// How the rows of a world lie in its memory. Hosts keep whole pixels between them.
struct RowLayout {
    const char* name;
    int paddingPixels;
    bool isUpward;  // the top row is the last in memory
};

// A world without a byte to spare: after its last pixel, or before its first where the rows go up, comes a guard page.
std::shared_ptr<host::World> GuardedWorld(A_long width, A_long height, int depth, const RowLayout& layout);

}  // namespace quillon::prove
