#include "shell/Drawbot.h"

#include "shell/Suites.h"

namespace quillon {

namespace {

template <class Table>
PF_Err Acquire(PF_InData& in, PF_OutData& out, const SuiteKey<Table>& key, const Table*& table) {
    const void* acquired = nullptr;
    const PF_Err error = AcquireOrReport(in, out, key.name, key.version, &acquired);
    table = static_cast<const Table*>(acquired);
    return error;
}

}  // namespace

PF_Err AEFX_AcquireDrawbotSuites(PF_InData& in, PF_OutData& out, DrawbotSuites* record) {
    if (!record) {
        ShowMessage(in, out, "NULL suite pointer passed to AEFX_AcquireDrawbotSuites");
        return PF_Err_UNRECOGNIZED_PARAM_TYPE;
    }
    *record = {};
    PF_Err error = Acquire(in, out, suites::kDrawbotDraw, record->draw);
    if (error == PF_Err_NONE) error = Acquire(in, out, suites::kDrawbotSupplier, record->supplier);
    if (error == PF_Err_NONE) error = Acquire(in, out, suites::kDrawbotSurface, record->surface);
    if (error == PF_Err_NONE) error = Acquire(in, out, suites::kDrawbotPath, record->path);
    return error;
}

PF_Err AEFX_ReleaseDrawbotSuites(PF_InData& in, PF_OutData& out, DrawbotSuites& record) {
    const auto release = [&](const auto& key, const void* table) {
        if (table) ReleaseOrReport(in, out, key.name, key.version);
    };
    release(suites::kDrawbotDraw, record.draw);
    release(suites::kDrawbotSupplier, record.supplier);
    release(suites::kDrawbotSurface, record.surface);
    release(suites::kDrawbotPath, record.path);
    record = {};
    return PF_Err_NONE;
}

}  // namespace quillon
