// The host's memory, as the utilities and the handle suite offer it.

#include "host/HostSession.h"
#include "host/HostTables.h"

namespace quillon::host {

namespace {

void Complain(const CallbackScope& visit, const std::string& fault) {
    if (!fault.empty()) visit->violation(fault);
}

}  // namespace

PF_Handle NewHandle(A_HandleSize size) {
    const CallbackScope visit(Callback::newHandle, static_cast<std::int64_t>(size));
    // Far beyond what an effect keeps: a size that went wrong.
    constexpr A_HandleSize kLargest = A_HandleSize{1} << 30;
    if (!visit || size > kLargest) return nullptr;
    const PF_Handle handle = visit->session.handles().make(size);
    visit->books.handleMade(handle);
    return handle;
}

void* LockHandle(PF_Handle handle) {
    const CallbackScope visit(Callback::lockHandle);
    if (!visit) return nullptr;
    std::string fault;
    void* const memory = visit->session.handles().lock(handle, fault);
    if (memory) visit->books.handleLocked(handle);
    Complain(visit, fault);
    return memory;
}

void UnlockHandle(PF_Handle handle) {
    const CallbackScope visit(Callback::unlockHandle);
    if (!visit.isInCall()) return;
    std::string fault;
    visit->session.handles().unlock(handle, fault);
    if (fault.empty()) visit->books.handleUnlocked(handle);
    Complain(visit, fault);
}

void DisposeHandle(PF_Handle handle) {
    const CallbackScope visit(Callback::disposeHandle);
    if (!visit.isInCall()) return;
    std::string fault;
    visit->session.handles().dispose(handle, fault);
    visit->books.handleDisposed(handle);
    Complain(visit, fault);
}

}  // namespace quillon::host
