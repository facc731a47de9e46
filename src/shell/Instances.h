#pragma once

#include <cstdint>
#include <map>

#include "engine/IPlugin.h"
#include "hostapi/HostApi.h"

namespace quillon {

// The effect instances of this process: which handles the engine has given out, and for which block of host memory.
// Blocks can hold anything. A host may copy a live one byte for byte, or bring back bytes of a process that has ended.
// So a handle from a block is used only while it is listed here. Needs the entry gate.
class Instances {
public:
    static Instances& instance();

    // A new instance, which becomes the selected one. `owner` is the block that will hold its handle.
    SequenceHandle* add(PF_Handle owner);

    // Whether this module has made the handle and not ended it. A host's bytes may name anything.
    bool contains(SequenceHandle* handle) const { return entries.contains(handle); }

    // Selects a listed instance. After a restart of the script it first gets a new Sequence, with the declared values.
    void select(SequenceHandle* handle);

    // Ends the instance if `owner` is its owner. A copy of the owner's block ends nothing, nor does an unknown handle.
    void end(SequenceHandle* handle, PF_Handle owner);

    // To be called before the script starts anew, which ends the Sequence of every instance.
    void scriptRestarts() { ++scriptLife; }

private:
    struct Entry {
        PF_Handle owner;
        std::uint32_t scriptLife;  // in which its Sequence was made
    };

    std::map<SequenceHandle*, Entry> entries;
    std::uint32_t scriptLife = 0;
};

}  // namespace quillon
