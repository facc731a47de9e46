#include "platform/StackSpace.h"

#include <windows.h>

#include <cstddef>
#include <cstdint>

namespace {

constexpr std::size_t kReservedBytes = 128 * 1024;

}  // namespace

namespace quillon {

bool NativeStackIsLow() {
    ULONG_PTR bottom = 0, top = 0;
    GetCurrentThreadStackLimits(&bottom, &top);
    const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    return here - bottom < kReservedBytes;
}

}  // namespace quillon
