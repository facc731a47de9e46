#include "platform/FailFast.h"

#include <windows.h>

#include <cstdlib>

namespace quillon {

void CrashProcess() noexcept {
    // abort() would ask the user in a message box first.
    RaiseFailFastException(nullptr, nullptr, 0);
    std::abort();
}

}  // namespace quillon
