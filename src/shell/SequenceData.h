#pragma once

#include <cstddef>
#include <cstdint>

#include "hostapi/HostApi.h"
#include "shell/Instances.h"

namespace quillon {

// An effect instance's block of host memory, all zero when made. The flat form, which the host saves, is all zero too:
// the host's parameters hold all that defines an instance's look.
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

// The block that a host handle names; null without one.
inline SequenceData* BlockOf(PF_Handle handle) {
    return handle ? reinterpret_cast<SequenceData*>(*handle) : nullptr;
}

// The block of a live instance. Null for no block, for a flat one, and for one whose handle the engine has not given
// out or has ended. Look again after each host call: it can end the instance, and the host then frees the block.
inline SequenceData* LiveBlockOf(PF_Handle handle) {
    SequenceData* const block = BlockOf(handle);
    return block && Instances::instance().contains(block->handle) ? block : nullptr;
}

}  // namespace quillon
