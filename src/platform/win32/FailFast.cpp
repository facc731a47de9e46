#include "platform/FailFast.h"

#include <windows.h>

#include <cstdlib>

namespace quillon {

namespace {
const char* volatile lastReason = nullptr;
}

void FailFast(const char* reason) noexcept {
    lastReason = reason;
    // Past every handler, with a crash dump: abort() would ask the user in a message box first.
    RaiseFailFastException(nullptr, nullptr, 0);
    std::abort();
}

}  // namespace quillon
