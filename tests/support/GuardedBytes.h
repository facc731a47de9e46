#pragma once

#include <cstddef>
#include <span>
#include <vector>

#if !defined(_WIN32)
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>
#endif

namespace quillon::test {

#if defined(_WIN32)

// The same reads are watched on the other system.
class GuardedBytes : public std::vector<std::byte> {
public:
    explicit GuardedBytes(std::span<const std::byte> bytes) : vector(bytes.begin(), bytes.end()) {
        reserve(1);  // no bytes have an address too
    }
};

#else

// A copy of some bytes that ends where readable memory ends: whoever reads on, be it a GL driver that no sanitizer
// watches, faults.
class GuardedBytes {
public:
    explicit GuardedBytes(std::span<const std::byte> bytes) {
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
    ~GuardedBytes() { munmap(mapping, mappedBytes); }
    GuardedBytes(const GuardedBytes&) = delete;
    GuardedBytes& operator=(const GuardedBytes&) = delete;

    const std::byte* data() const { return first; }

private:
    void* mapping = nullptr;
    std::size_t mappedBytes = 0;
    std::byte* first = nullptr;
};

#endif

}  // namespace quillon::test
