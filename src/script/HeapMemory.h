#pragma once

#include <cstddef>

namespace quillon::HeapMemory {

// The memory of the one script heap. Duktape cannot go back from a lack of memory while it makes a heap, so all that it
// takes for that comes from a reserve that is there before. Later blocks come from the process heap.

// Takes the reserve, and opens it. False when there is no memory.
bool TakeReserve();
// New blocks no longer come from the reserve. Those in it stay valid.
void CloseReserve();
// After the end of the heap: gives the reserve back.
void ReturnReserve();

// The heap's allocation functions, with the meaning of those of the C library; `heap` is ignored.
void* Allocate(void* heap, std::size_t bytes);
void* Reallocate(void* heap, void* block, std::size_t bytes);
void Release(void* heap, void* block);

}  // namespace quillon::HeapMemory
