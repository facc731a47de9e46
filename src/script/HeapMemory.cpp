#include "script/HeapMemory.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace quillon::HeapMemory {

namespace {

// A heap and its natives take 220 KiB.
constexpr std::size_t kReserveBytes = 320 * 1024;
constexpr std::size_t kAlignment = 16;

std::byte* reserve = nullptr;
std::size_t usedBytes = 0;
bool isOpen = false;

bool IsInReserve(const void* block) {
    return reinterpret_cast<std::uintptr_t>(block) - reinterpret_cast<std::uintptr_t>(reserve) < kReserveBytes;
}

// The size of a block in the reserve is kept in front of it.
std::size_t& SizeOf(void* block) {
    return *reinterpret_cast<std::size_t*>(static_cast<std::byte*>(block) - kAlignment);
}

void* TakeFromReserve(std::size_t bytes) {
    const std::size_t needed = kAlignment + (bytes + kAlignment - 1) / kAlignment * kAlignment;
    if (bytes > kReserveBytes || needed > kReserveBytes - usedBytes) return nullptr;
    void* const block = reserve + usedBytes + kAlignment;
    usedBytes += needed;
    SizeOf(block) = bytes;
    return block;
}

}  // namespace

bool TakeReserve() {
    reserve = static_cast<std::byte*>(std::malloc(kReserveBytes));
    usedBytes = 0;
    isOpen = reserve != nullptr;
    return isOpen;
}

void CloseReserve() {
    isOpen = false;
}

void ReturnReserve() {
    isOpen = false;
    std::free(std::exchange(reserve, nullptr));
}

void* Allocate(void*, std::size_t bytes) {
    void* const block = isOpen ? TakeFromReserve(bytes) : nullptr;
    return block ? block : std::malloc(bytes);
}

void* Reallocate(void* heap, void* block, std::size_t bytes) {
    if (!block) return Allocate(heap, bytes);
    if (!reserve || !IsInReserve(block)) return std::realloc(block, bytes);
    if (bytes <= SizeOf(block)) return block;
    void* const larger = Allocate(heap, bytes);
    if (larger) std::memcpy(larger, block, SizeOf(block));
    return larger;
}

void Release(void*, void* block) {
    // Blocks of the reserve go with it.
    if (!reserve || !IsInReserve(block)) std::free(block);
}

}  // namespace quillon::HeapMemory
