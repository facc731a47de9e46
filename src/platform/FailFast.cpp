#include "platform/FailFast.h"

#include <utility>

namespace quillon {

namespace {
const char* volatile lastReason = nullptr;
FailFastObserver failFastObserver = nullptr;
}  // namespace

void FailFast(const char* reason) noexcept {
    lastReason = reason;
    // An observer that fails itself is not asked again.
    if (const FailFastObserver observer = std::exchange(failFastObserver, nullptr)) observer(reason);
    CrashProcess();
}

void SetFailFastObserver(FailFastObserver observer) {
    failFastObserver = observer;
}

}  // namespace quillon
