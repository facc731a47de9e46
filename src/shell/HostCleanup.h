#pragma once

#include <exception>
#include <utility>

namespace quillon {

// Host calls that must come at the end of a scope. A host can throw from any callback. What it throws at the end of a
// scope that is left without an exception passes on to the caller. While another exception is already on its way, that
// first one is reported and the later one is dropped. Destructors that make such calls are noexcept(false).

// Made at the start of a scope; run() makes the call at its end.
class EndOfScope {
public:
    template <class HostCall>
    void run(HostCall call) const {
        if (std::uncaught_exceptions() == exceptionsAtStart) return call();
        try {
            call();
        } catch (...) {
            return;
        }
    }

private:
    const int exceptionsAtStart = std::uncaught_exceptions();
};

// Makes one host call at the end of the scope that holds it.
template <class HostCall>
class AtEnd {
public:
    explicit AtEnd(HostCall hostCall) : call(std::move(hostCall)) {}
    ~AtEnd() noexcept(false) { end.run(call); }
    AtEnd(const AtEnd&) = delete;
    AtEnd& operator=(const AtEnd&) = delete;

private:
    HostCall call;
    EndOfScope end;
};

// Calls `hostCall` for each item, also after one that throws. The first exception is thrown at the end.
template <class Items, class HostCall>
void CallForEach(const Items& items, HostCall hostCall) {
    std::exception_ptr first;
    for (const auto& item : items) {
        try {
            hostCall(item);
        } catch (...) {
            if (!first) first = std::current_exception();
        }
    }
    if (first) std::rethrow_exception(first);
}

}  // namespace quillon
