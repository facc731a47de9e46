#pragma once

#include <cstdint>

namespace quillon {

// The next multiple of the alignment, the value itself where it is one. The sum of both must fit.
constexpr std::uint64_t AlignUp(std::uint64_t value, std::uint64_t alignment) {
    return (value + alignment - 1) / alignment * alignment;
}

}  // namespace quillon
