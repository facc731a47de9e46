#pragma once

#include "cli/check/watch/CallCheck.h"

namespace quillon::cli {

// Arguments that make a call do nothing: ids of nothing or of another kind, arguments in another order, and what is no
// number where one is needed.
class IdChecks : public CallCheck {
public:
    using CallCheck::CallCheck;
    void before(const NativeCall& call) override;

private:
    void report(const NativeCall& call, std::size_t argument, bool namesNothing) const;
    void checkRelease(const NativeCall& call) const;
};

}  // namespace quillon::cli
