#include "platform/Clock.h"

#include <windows.h>

namespace quillon {

std::uint32_t TickMilliseconds() {
    return GetTickCount();
}

}  // namespace quillon
