#include "platform/FailFast.h"

#include <cstdlib>

namespace quillon {

namespace {
const char* volatile lastReason = nullptr;
}

void FailFast(const char* reason) noexcept {
    lastReason = reason;
    std::abort();
}

}  // namespace quillon
