#include "FakeEffect.h"

namespace quillon::host::test {

std::function<PF_Err(const Given&)>& Act() {
    static thread_local std::function<PF_Err(const Given&)> deed;
    return deed;
}

PF_Err FakeEntry(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef* params[], PF_LayerDef* output, void* extra) {
    return Act() ? Act()({cmd, *in, *out, params, output, extra}) : PF_Err{PF_Err_NONE};
}

}  // namespace quillon::host::test
