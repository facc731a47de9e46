#pragma once

#include <cstddef>
#include <cstdint>

#include "engine/IPlugin.h"
#include "hostapi/HostApi.h"

namespace quillon {

// An effect instance's block of host memory, all zero when made. Its flat form, which the host saves, is all zero too:
// what an instance looks like is in the host's parameters alone.
struct SequenceData {
    std::uint32_t lastWidth;  // of the last render, like the next two, while recordFrameSize is set
    std::uint32_t lastHeight;
    std::uint32_t lastDepth;
    std::uint32_t compWidth;  // of the composition, as last asked
    std::uint32_t compHeight;
    std::uint32_t reserved20;
    std::uint8_t recordFrameSize;
    std::uint8_t needsRestart;  // a button restarts the script
    std::uint8_t reserved26[6];
    SequenceHandle* handle;  // of the engine; null in a flat block
    float compAspect;
    std::uint8_t reserved44[8192 - 44];
};
static_assert(sizeof(SequenceData) == 8192 && offsetof(SequenceData, recordFrameSize) == 24 &&
              offsetof(SequenceData, handle) == 32 && offsetof(SequenceData, compAspect) == 40);

// The block behind a host handle; null when there is none.
inline SequenceData* BlockOf(PF_Handle handle) {
    return handle ? reinterpret_cast<SequenceData*>(*handle) : nullptr;
}

// The block of a live instance; null for none and for a flat one.
inline SequenceData* LiveBlockOf(PF_Handle handle) {
    SequenceData* block = BlockOf(handle);
    return block && block->handle ? block : nullptr;
}

}  // namespace quillon
