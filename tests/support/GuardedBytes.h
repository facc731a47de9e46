#pragma once

#include <cstddef>
#include <span>

namespace quillon::test {

// A copy of some bytes that ends where readable memory ends: whoever reads on, be it a GL driver that no sanitizer
// watches, faults.
class GuardedBytes {
public:
    explicit GuardedBytes(std::span<const std::byte> bytes);
    ~GuardedBytes();
    GuardedBytes(const GuardedBytes&) = delete;
    GuardedBytes& operator=(const GuardedBytes&) = delete;

    const std::byte* data() const { return first; }

private:
    void* mapping = nullptr;
    std::size_t mappedBytes = 0;
    std::byte* first = nullptr;
};

}  // namespace quillon::test
