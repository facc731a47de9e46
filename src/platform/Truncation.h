#pragma once

#include <cstdint>
#include <limits>

namespace quillon {

// Cuts toward zero. What has no 32-bit integer, NaN too, gives the lowest one, on every machine.
constexpr std::int32_t TruncateToInt32(double number) {
    if (!(number > -2147483649.0 && number < 2147483648.0)) return std::numeric_limits<std::int32_t>::min();
    return static_cast<std::int32_t>(number);
}

}  // namespace quillon
