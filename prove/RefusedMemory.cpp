// Takes the place of malloc and its kin. Part of the proving ground's program, for modules that it loads, and a library
// that the loader puts in front of another program.

#include "RefusedMemory.h"

#include <dlfcn.h>
#include <sys/auxv.h>
#include <unwind.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#define QUILLON_SEEN extern "C" __attribute__((visibility("default")))

extern "C" void* __libc_malloc(std::size_t);
extern "C" void* __libc_calloc(std::size_t, std::size_t);
extern "C" void* __libc_realloc(void*, std::size_t);

namespace quillon::prove {

namespace {

struct CodeRange {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    bool holds(std::uintptr_t address) const { return address >= begin && address < end; }
};

CodeRange RangeOf(const void* code) {
    dl_find_object found{};
    if (_dl_find_object(const_cast<void*>(code), &found) != 0) return {};
    return {reinterpret_cast<std::uintptr_t>(found.dlfo_map_start),
            reinterpret_cast<std::uintptr_t>(found.dlfo_map_end)};
}

std::atomic<bool> isRefusing = false;
std::atomic<long> counted = 0;
std::atomic<long> refusedFrom = 0;
std::atomic<bool> refusesAll = false;
CodeRange watched, cppLibrary;
thread_local bool isUnwinding = false;

// Whether the first caller that is not the C++ library is the watched code.
bool IsForWatched(std::uintptr_t caller) {
    if (watched.holds(caller)) return true;
    if (!cppLibrary.holds(caller) || isUnwinding) return false;
    isUnwinding = true;
    struct Walk {
        bool isPastLibrary = false;
        std::uintptr_t caller = 0;
    } walk;
    _Unwind_Backtrace(
        [](_Unwind_Context* frame, void* data) {
            auto& walking = *static_cast<Walk*>(data);
            const std::uintptr_t at = _Unwind_GetIP(frame);
            const bool isLibrary = cppLibrary.holds(at);
            if (walking.isPastLibrary && !isLibrary) {
                walking.caller = at;
                return _URC_END_OF_STACK;
            }
            walking.isPastLibrary = walking.isPastLibrary || isLibrary;
            return _URC_NO_REASON;
        },
        &walk);
    isUnwinding = false;
    return watched.holds(walk.caller);
}

[[maybe_unused]] bool IsRefused(const void* caller) {  // a sanitizer keeps its malloc
    if (!isRefusing || !IsForWatched(reinterpret_cast<std::uintptr_t>(caller))) return false;
    const long number = ++counted;
    return number == refusedFrom || (refusesAll && number > refusedFrom);
}

}  // namespace

void RefuseMemory(const void* code, long nth, Refused which) {
    watched = RangeOf(code);
    cppLibrary = RangeOf(dlsym(RTLD_DEFAULT, "_ZSt9terminatev"));
    counted = 0;
    refusedFrom = nth;
    refusesAll = which == Refused::allFromThere;
    isRefusing = true;
}

long EndRefusal() {
    isRefusing = false;
    return counted;
}

}  // namespace quillon::prove

#if !defined(QUILLON_KEEPS_MALLOC)

using quillon::prove::IsRefused;

QUILLON_SEEN void* malloc(std::size_t bytes) noexcept {
    return IsRefused(__builtin_return_address(0)) ? nullptr : __libc_malloc(bytes);
}
QUILLON_SEEN void* calloc(std::size_t count, std::size_t bytes) noexcept {
    return IsRefused(__builtin_return_address(0)) ? nullptr : __libc_calloc(count, bytes);
}
QUILLON_SEEN void* realloc(void* memory, std::size_t bytes) noexcept {
    return IsRefused(__builtin_return_address(0)) ? nullptr : __libc_realloc(memory, bytes);
}

#endif

#if defined(QUILLON_PRELOADED)

namespace {

int (*programsMain)(int, char**, char**);

// What a program sets up before main() is not what is refused.
int MainUnderRefusal(int argc, char** argv, char** environment) {
    using namespace quillon::prove;
    if (const char* const wish = std::getenv(kRefusalVariable))
        RefuseMemory(reinterpret_cast<const void*>(getauxval(AT_ENTRY)), std::strtol(wish, nullptr, 10),
                     std::strchr(wish, '+') ? Refused::allFromThere : Refused::onlyThatOne);
    const int status = programsMain(argc, argv, environment);
    EndRefusal();
    return status;
}

}  // namespace

QUILLON_SEEN int __libc_start_main(int (*main)(int, char**, char**), int argc, char** argv, void (*init)(),
                                   void (*fini)(), void (*loaderFini)(), void* stackEnd) {
    programsMain = main;
    using Start = decltype(__libc_start_main);
    return reinterpret_cast<Start*>(dlsym(RTLD_NEXT, "__libc_start_main"))(MainUnderRefusal, argc, argv, init, fini,
                                                                           loaderFini, stackEnd);
}

#endif
