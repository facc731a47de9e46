#pragma once

#include <functional>

#include "host/HostSession.h"

namespace quillon::host::test {

// An effect that does what a test wants: what it runs for a selector is `act` of the calling thread.
struct Given {
    PF_Cmd cmd;
    PF_InData& in;
    PF_OutData& out;
    PF_ParamDef** params;
    PF_LayerDef* output;
    void* extra;

    template <class Table>
    const Table* acquire(const SuiteKey<Table>& key) const {
        const void* table = nullptr;
        in.pica_basicP->AcquireSuite(key.name, key.version, &table);
        return static_cast<const Table*>(table);
    }
    template <class Table>
    SPErr release(const SuiteKey<Table>& key) const {
        return in.pica_basicP->ReleaseSuite(key.name, key.version);
    }
};

// Of the calling thread; nothing to begin with.
std::function<PF_Err(const Given&)>& Act();

PF_Err FakeEntry(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef* params[], PF_LayerDef* output, void* extra);

}  // namespace quillon::host::test
