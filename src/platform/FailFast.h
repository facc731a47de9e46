#pragma once

namespace quillon {

// Ends the process at once where its contract demands a fault, instead of running on into undefined behavior.
// `reason` is a literal that completes "the effect failed: ". A debugger or a crash dump finds it; nobody is shown it
// unless there is an observer.
[[noreturn]] void FailFast(const char* reason) noexcept;

// Is called with the reason, on the thread that fails, before the process ends. It may end the process itself, in its
// own way; it must not throw. Null, the default, for none: the effect module never has one. Set it before other
// threads run.
using FailFastObserver = void (*)(const char* reason);
void SetFailFastObserver(FailFastObserver observer);

// The system's part of it: ends the process past every handler, with a crash report where the system makes one.
[[noreturn]] void CrashProcess() noexcept;

}  // namespace quillon
