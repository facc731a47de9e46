#pragma once

#include "hostapi/HostApi.h"

namespace quillon {

// One call of EntryPointFunc, from entry to return. Calls nest, since a host can enter the effect again from a
// callback; the entry gate sees to it that all calls of a moment are on one thread.
class ActiveCall {
public:
    explicit ActiveCall(PF_InData* in_data) : in(in_data), outer(innermost) { innermost = this; }
    ~ActiveCall() { innermost = outer; }
    ActiveCall(const ActiveCall&) = delete;
    ActiveCall& operator=(const ActiveCall&) = delete;

    // Takes a disposed block out of in_data of this call and of the calls around it, which would read freed memory when
    // they go on.
    static void ForgetBlock(PF_Handle block) {
        for (const ActiveCall* call = innermost; call; call = call->outer)
            if (call->in && call->in->sequence_data == block) call->in->sequence_data = nullptr;
    }

private:
    PF_InData* const in;
    ActiveCall* const outer;
    static inline ActiveCall* innermost = nullptr;
};

}  // namespace quillon
