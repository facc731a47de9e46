// The life of an effect instance's block: made, made again, flattened, ended.

#include <cstring>

#include "shell/ActiveCall.h"
#include "shell/EngineTurn.h"
#include "shell/HostCleanup.h"
#include "shell/HostVersion.h"
#include "shell/ParameterTransfer.h"
#include "shell/Selectors.h"
#include "shell/Suites.h"

namespace quillon {

namespace {

// A new block, locked and cleared. Its scope ends with the unlock, and with the block's disposal where an exception
// came before give(). Null data: the host has no memory or does not lock.
class NewBlock {
public:
    explicit NewBlock(const PF_HandleSuite1& suite)
        : handles(suite), hostHandle(suite.host_new_handle(sizeof(SequenceData))) {
        if (hostHandle) block = static_cast<SequenceData*>(handles.host_lock_handle(hostHandle));
        if (block) std::memset(static_cast<void*>(block), 0, sizeof *block);
    }
    ~NewBlock() noexcept(false) {
        if (!block) return;
        end.run([this] {
            handles.host_unlock_handle(hostHandle);
            if (!isGiven) handles.host_dispose_handle(hostHandle);
        });
    }
    NewBlock(const NewBlock&) = delete;
    NewBlock& operator=(const NewBlock&) = delete;

    PF_Handle handle() const { return hostHandle; }
    SequenceData* data() const { return block; }
    // Hands the block over to the host.
    void give(PF_OutData& out) {
        out.sequence_data = hostHandle;
        isGiven = true;
    }

private:
    const PF_HandleSuite1& handles;
    PF_Handle hostHandle;
    SequenceData* block = nullptr;
    bool isGiven = false;
    EndOfScope end;
};

void EndInstance(PF_InData& in, const PF_HandleSuite1& handles) {
    const PF_Handle ended = in.sequence_data;
    if (!ended) return;
    if (const SequenceData* block = BlockOf(ended)) Instances::instance().end(block->handle, ended);
    handles.host_dispose_handle(ended);
    ActiveCall::ForgetBlock(ended);
}

}  // namespace

PF_Err SequenceSetup(PF_InData& in, PF_OutData& out) {
    SuiteCache cache(in.pica_basicP);
    const PF_HandleSuite1& handles = cache.get(suites::kHandle);
    EndInstance(in, handles);
    NewBlock block(handles);
    if (!block.handle()) return PF_Err_OUT_OF_MEMORY;
    if (!block.data()) return PF_Err_NONE;
    block.data()->handle = Instances::instance().add(block.handle());
    block.give(out);
    return PF_Err_NONE;
}

PF_Err SequenceResetup(PF_InData& in, PF_OutData& out) {
    SuiteCache cache(in.pica_basicP);
    if (!in.sequence_data) return PF_Err_NONE;
    PF_Handle made = nullptr;
    {
        // The block that the host passed may be flat, live or a copy. Nothing of it is read, and it stays the host's.
        NewBlock block(cache.get(suites::kHandle));
        if (!block.data()) return PF_Err_NONE;
        block.data()->needsRestart = 1;
        block.data()->recordFrameSize = IsPremiere(in) ? 0 : 1;
        made = block.handle();
        block.data()->handle = Instances::instance().add(made);
        block.give(out);
    }
    if (!IsPremiere(in) && !IsAfterEffectsFrom(in, 13, 9)) out.out_flags |= PF_OutFlag_FORCE_RERENDER;
    refreshParamUI(in, out, nullptr, made);
    return PF_Err_NONE;
}

PF_Err SequenceFlatten(PF_InData& in, PF_OutData& out) {
    SuiteCache cache(in.pica_basicP);
    if (!in.sequence_data) return PF_Err_NONE;
    NewBlock flat(cache.get(suites::kHandle));
    if (!flat.data()) return PF_Err_NONE;
    // The live block and its instance stay: the host can go on using them.
    SelectInstance(in.sequence_data);
    flat.give(out);
    return PF_Err_NONE;
}

PF_Err SequenceSetdown(PF_InData& in) {
    SuiteCache cache(in.pica_basicP);
    if (in.sequence_data) EndInstance(in, cache.get(suites::kHandle));
    return PF_Err_NONE;
}

}  // namespace quillon
