#include "shell/Suites.h"

#include <cstring>
#include <span>

namespace quillon {

SuiteCache::SuiteCache(SPBasicSuite* basicSuite) : basic(basicSuite) {
    if (!basic) throw int{PF_Err_BAD_CALLBACK_PARAM};
}

SuiteCache::~SuiteCache() noexcept(false) {
    end.run([this] {
        CallForEach(std::span(slots).first(used),
                    [this](const Slot& slot) { basic->ReleaseSuite(slot.name, slot.version); });
    });
}

const void* SuiteCache::acquire(const char* name, std::int32_t version) {
    for (std::size_t i = 0; i < used; ++i)
        if (std::strcmp(slots[i].name, name) == 0) return slots[i].table;
    const void* table = nullptr;
    if (used == slots.size() || basic->AcquireSuite(name, version, &table) != 0 || !table)
        throw int{PF_Err_BAD_CALLBACK_PARAM};
    slots[used++] = {name, version, table};
    return table;
}

void ShowMessage(PF_InData& in, PF_OutData& out, const char* message) {
    out.out_flags |= PF_OutFlag_DISPLAY_ERROR_MESSAGE;
    in.utils->ansi.sprintf(out.return_msg, "%s", message);
}

PF_Err AcquireOrReport(PF_InData& in, PF_OutData& out, const char* name, std::int32_t version, const void** table) {
    *table = nullptr;
    if (in.pica_basicP && in.pica_basicP->AcquireSuite(name, version, table) == 0 && *table) return PF_Err_NONE;
    *table = nullptr;
    ShowMessage(in, out, "Not able to acquire AEFX Suite.");
    return PF_Err_BAD_CALLBACK_PARAM;
}

void ReleaseOrReport(PF_InData& in, PF_OutData& out, const char* name, std::int32_t version) {
    if (in.pica_basicP)
        in.pica_basicP->ReleaseSuite(name, version);
    else
        ShowMessage(in, out, "Not able to release AEFX Suite.");
}

}  // namespace quillon
