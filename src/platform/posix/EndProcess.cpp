#include "platform/EndProcess.h"

#include <cstdlib>

namespace quillon {

namespace {
const char* volatile lastReason = nullptr;
}

void EndProcess(const char* reason) noexcept {
    lastReason = reason;
    std::abort();
}

}  // namespace quillon
