// The life of an effect instance's block: made, made again, flattened, ended.

#include <cstring>

#include "engine/AEQuillon2.h"
#include "shell/HostVersion.h"
#include "shell/ParameterTransfer.h"
#include "shell/Selectors.h"
#include "shell/SequenceData.h"
#include "shell/Suites.h"

namespace quillon {

namespace {

// A new block, locked and cleared, for the life of a scope. Null data: the host has no memory or does not lock.
class NewBlock {
public:
    explicit NewBlock(const PF_HandleSuite1& suite)
        : handles(suite), hostHandle(suite.host_new_handle(sizeof(SequenceData))) {
        if (hostHandle) block = static_cast<SequenceData*>(handles.host_lock_handle(hostHandle));
        if (block) std::memset(static_cast<void*>(block), 0, sizeof *block);
    }
    ~NewBlock() {
        if (block) handles.host_unlock_handle(hostHandle);
    }
    NewBlock(const NewBlock&) = delete;
    NewBlock& operator=(const NewBlock&) = delete;

    PF_Handle handle() const { return hostHandle; }
    SequenceData* data() const { return block; }

private:
    const PF_HandleSuite1& handles;
    PF_Handle hostHandle;
    SequenceData* block = nullptr;
};

PF_Err EndInstance(PF_InData& in, const PF_HandleSuite1& handles) {
    if (!in.sequence_data) return PF_Err_NONE;
    if (SequenceData* block = LiveBlockOf(in.sequence_data)) AEQuillon2::instance().destroySequence(block->handle);
    handles.host_dispose_handle(in.sequence_data);
    in.sequence_data = nullptr;
    return PF_Err_NONE;
}

}  // namespace

PF_Err SequenceSetup(PF_InData& in, PF_OutData& out) {
    SuiteCache cache(in.pica_basicP);
    const PF_HandleSuite1& handles = cache.get(suites::kHandle);
    if (const PF_Err error = EndInstance(in, handles); error != PF_Err_NONE) return error;
    const NewBlock block(handles);
    if (!block.handle()) return PF_Err_OUT_OF_MEMORY;
    if (!block.data()) return PF_Err_NONE;
    block.data()->handle = AEQuillon2::instance().createSequence();
    out.sequence_data = block.handle();
    return PF_Err_NONE;
}

PF_Err SequenceResetup(PF_InData& in, PF_OutData& out) {
    SuiteCache cache(in.pica_basicP);
    if (!in.sequence_data) return PF_Err_NONE;
    {
        const NewBlock block(cache.get(suites::kHandle));
        if (!block.data()) return PF_Err_NONE;
        block.data()->needsRestart = 1;
        block.data()->recordFrameSize = IsPremiere(in) ? 0 : 1;
        block.data()->handle = AEQuillon2::instance().createSequence();
        // The block that the host passed may be flat or live; nothing of it is read, and it stays the host's.
        if (BlockOf(in.sequence_data)) AEQuillon2::instance().selectSequence(block.data()->handle);
        out.sequence_data = block.handle();
    }
    if (!IsPremiere(in) && !IsAfterEffectsFrom13_9(in)) out.out_flags |= PF_OutFlag_FORCE_RERENDER;
    refreshParamUI(in, out, nullptr);
    return PF_Err_NONE;
}

PF_Err SequenceFlatten(PF_InData& in, PF_OutData& out) {
    SuiteCache cache(in.pica_basicP);
    if (!in.sequence_data) return PF_Err_NONE;
    const NewBlock flat(cache.get(suites::kHandle));
    if (!flat.data()) return PF_Err_NONE;
    // The live block and its instance go on: the host may still use them.
    const SequenceData* live = BlockOf(in.sequence_data);
    AEQuillon2::instance().selectSequence(live ? live->handle : nullptr);
    out.sequence_data = flat.handle();
    return PF_Err_NONE;
}

PF_Err SequenceSetdown(PF_InData& in) {
    SuiteCache cache(in.pica_basicP);
    if (!in.sequence_data) return PF_Err_NONE;
    return EndInstance(in, cache.get(suites::kHandle));
}

}  // namespace quillon
