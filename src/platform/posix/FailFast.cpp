#include "platform/FailFast.h"

#include <cstdlib>

namespace quillon {

void CrashProcess() noexcept {
    std::abort();
}

}  // namespace quillon
