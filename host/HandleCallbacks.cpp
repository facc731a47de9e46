// The host's memory, as the utilities and the handle suite offer it.

#include "host/HostSession.h"
#include "host/HostTables.h"

namespace quillon::host {

namespace {

void Complain(const CallbackScope& scope, const std::string& fault) {
    if (!fault.empty()) scope->violation(fault);
}

}  // namespace

PF_Handle NewHandle(A_HandleSize size) {
    const CallbackScope scope(Callback::newHandle, static_cast<std::int64_t>(size));
    // Far beyond what an effect keeps: a size that went wrong.
    constexpr A_HandleSize kLargest = A_HandleSize{1} << 30;
    if (!scope || size > kLargest) return nullptr;
    const PF_Handle handle = scope->session.handles().make(size);
    scope->ledger.handleMade(handle);
    return handle;
}

void* LockHandle(PF_Handle handle) {
    const CallbackScope scope(Callback::lockHandle);
    if (!scope) return nullptr;
    std::string fault;
    void* const memory = scope->session.handles().lock(handle, fault);
    if (memory) scope->ledger.handleLocked(handle);
    Complain(scope, fault);
    return memory;
}

void UnlockHandle(PF_Handle handle) {
    const CallbackScope scope(Callback::unlockHandle);
    if (!scope.isInCall()) return;
    std::string fault;
    scope->session.handles().unlock(handle, fault);
    if (fault.empty()) scope->ledger.handleUnlocked(handle);
    Complain(scope, fault);
}

void DisposeHandle(PF_Handle handle) {
    const CallbackScope scope(Callback::disposeHandle);
    if (!scope.isInCall()) return;
    std::string fault;
    scope->session.handles().dispose(handle, fault);
    scope->ledger.handleDisposed(handle);
    Complain(scope, fault);
}

}  // namespace quillon::host
