#include "platform/MemoryShortage.h"

#include <atomic>

namespace quillon {

namespace {
std::atomic<bool> hasBeenShort = false;
}  // namespace

void NoteMemoryShortage() noexcept {
    hasBeenShort = true;
}

bool TakeMemoryShortage() noexcept {
    return hasBeenShort.exchange(false);
}

}  // namespace quillon
