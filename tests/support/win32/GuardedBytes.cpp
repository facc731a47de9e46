#include "support/GuardedBytes.h"

#include <windows.h>

#include <algorithm>
#include <stdexcept>

namespace quillon::test {

GuardedBytes::GuardedBytes(std::span<const std::byte> bytes) {
    constexpr std::size_t page = 4096;
    const std::size_t readable = (bytes.size() + page - 1) / page * page;
    mappedBytes = readable + page;
    mapping = VirtualAlloc(nullptr, mappedBytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    if (!mapping) throw std::runtime_error("no memory with a guard");
    std::byte* const end = static_cast<std::byte*>(mapping) + readable;
    DWORD before = 0;
    if (!VirtualProtect(end, page, PAGE_NOACCESS, &before)) throw std::runtime_error("no guard after the memory");
    first = end - bytes.size();
    std::copy(bytes.begin(), bytes.end(), first);
}

GuardedBytes::~GuardedBytes() {
    VirtualFree(mapping, 0, MEM_RELEASE);
}

}  // namespace quillon::test
