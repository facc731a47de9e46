#include "support/GuardedBytes.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>

namespace quillon::test {

GuardedBytes::GuardedBytes(std::span<const std::byte> bytes) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t readable = (bytes.size() + page - 1) / page * page;
    mappedBytes = readable + page;
    mapping = mmap(nullptr, mappedBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapping == MAP_FAILED) throw std::runtime_error("no memory with a guard");
    std::byte* const end = static_cast<std::byte*>(mapping) + readable;
    if (mprotect(end, page, PROT_NONE) != 0) throw std::runtime_error("no guard after the memory");
    first = end - bytes.size();
    std::copy(bytes.begin(), bytes.end(), first);
}

GuardedBytes::~GuardedBytes() {
    munmap(mapping, mappedBytes);
}

}  // namespace quillon::test
