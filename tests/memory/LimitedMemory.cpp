#include "memory/LimitedMemory.h"

#include <cstdlib>
#include <new>

#if !defined(_WIN32)
extern "C" const char __executable_start;
extern "C" const char etext;
#endif

namespace quillon::test {

thread_local long allocationsLeft = -1;
thread_local bool countsOwnCodeOnly = false;

namespace {

bool IsOwnCode([[maybe_unused]] const void* address) {
#if defined(_WIN32)
    return true;
#else
    const auto* code = static_cast<const char*>(address);
    return code >= &__executable_start && code < &etext;
#endif
}

void* Allocate(std::size_t bytes, const void* caller) {
    if (allocationsLeft >= 0 && (!countsOwnCodeOnly || IsOwnCode(caller))) {
        if (allocationsLeft == 0) return nullptr;
        --allocationsLeft;
    }
    return std::malloc(bytes != 0 ? bytes : 1);
}

void* AllocateOrThrow(std::size_t bytes, const void* caller) {
    if (void* const memory = Allocate(bytes, caller)) return memory;
    throw std::bad_alloc();
}

}  // namespace
}  // namespace quillon::test

using quillon::test::Allocate;
using quillon::test::AllocateOrThrow;

void* operator new(std::size_t bytes) {
    return AllocateOrThrow(bytes, __builtin_return_address(0));
}
void* operator new[](std::size_t bytes) {
    return AllocateOrThrow(bytes, __builtin_return_address(0));
}
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
    return Allocate(bytes, __builtin_return_address(0));
}
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
    return Allocate(bytes, __builtin_return_address(0));
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
