#pragma once

namespace quillon {

// Ends the process at once where its contract demands a fault, instead of running on into undefined behavior.
// `reason` is a literal; it is left where a debugger or a crash dump finds it, and is shown to nobody.
[[noreturn]] void FailFast(const char* reason) noexcept;

}  // namespace quillon
