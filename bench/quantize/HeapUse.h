#pragma once

#include <cstddef>

namespace quillon::bench {

// The most bytes that were allocated at once since the object was made, beyond those that were before.
class HeapUse {
public:
    HeapUse();
    std::size_t peak() const;

private:
    std::size_t before;
};

}  // namespace quillon::bench
