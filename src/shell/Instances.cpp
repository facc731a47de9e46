#include "shell/Instances.h"

#include <utility>

#include "engine/AEQuillon2.h"

namespace quillon {

Instances& Instances::instance() {
    static auto* const kAll = new Instances;  // as the entry gate: host threads can still be inside at process exit
    return *kAll;
}

SequenceHandle* Instances::add(PF_Handle owner) {
    SequenceHandle* const handle = AEQuillon2::instance().createSequence();
    try {
        entries[handle] = {owner, scriptLife};
    } catch (...) {
        AEQuillon2::instance().destroySequence(handle);
        throw;
    }
    return handle;
}

void Instances::select(SequenceHandle* handle) {
    IPlugin& engine = AEQuillon2::instance();
    Entry& entry = entries.at(handle);
    if (entry.scriptLife != scriptLife) {
        // The address of the handle stays: the block, and copies of it, hold it.
        SequenceHandle* const fresh = engine.createSequence();
        std::swap(*handle, *fresh);
        engine.destroySequence(fresh);
        entry.scriptLife = scriptLife;
    }
    engine.selectSequence(handle);
}

void Instances::end(SequenceHandle* handle, PF_Handle owner) {
    const auto found = entries.find(handle);
    if (found == entries.end() || found->second.owner != owner) return;
    entries.erase(found);
    AEQuillon2::instance().destroySequence(handle);
}

}  // namespace quillon
