#include "platform/StackSpace.h"

#include <pthread.h>

#include <cstddef>
#include <cstdint>

namespace {

constexpr std::size_t kReservedBytes = 128 * 1024;

// Lowest address of the calling thread's stack; 0 when the system does not report it.
std::uintptr_t StackBottom() {
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0) return 0;
    void* bottom = nullptr;
    std::size_t size = 0;
    pthread_attr_getstack(&attributes, &bottom, &size);
    pthread_attr_destroy(&attributes);
    return reinterpret_cast<std::uintptr_t>(bottom);
}

}  // namespace

namespace quillon {

bool NativeStackIsLow() {
    // Asking the system reads a file on the main thread, and a thread's stack does not move.
    thread_local const std::uintptr_t kBottom = StackBottom();
    const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    return here - kBottom < kReservedBytes;
}

}  // namespace quillon
