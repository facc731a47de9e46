#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

struct duk_hthread;

namespace quillon {

struct Native;

// A call of a native function by the script, for the time of the call. The arguments are those that the script gave,
// before the native converts them. Reading them runs no code of the script.
class NativeCall {
public:
    enum class Type { missing, undefined, null, boolean, number, text, array, other };

    std::string_view name() const;
    std::size_t count() const { return argumentCount; }  // of the arguments that were given
    Type typeOf(std::size_t argument) const;
    // As the native converts it; nothing for what is converted by a script, or not at all. NaN for `undefined` and for
    // a text that is no number.
    std::optional<double> numberOf(std::size_t argument) const;
    // The same for an id, which is converted to a whole number of 32 bits; what is no number is 0.
    std::optional<std::uint32_t> idOf(std::size_t argument) const;
    bool isTrue(std::size_t argument) const;              // as a native reads a bool
    std::string_view textOf(std::size_t argument) const;  // empty unless it is a text
    std::size_t lengthOf(std::size_t argument) const;     // 0 unless it is an array

    // In NativeListener::after: whether the native gave `false`, and the number that it gave, 0 for anything else.
    bool isRefused() const;
    double resultNumber() const;

    // Where the script calls, in lines of the prepared source, see CallingLines.
    std::size_t lines(std::span<int> innermostFirst) const;

private:
    friend class NativeCallTeller;
    NativeCall(duk_hthread* ctx, const Native& calledNative, std::size_t count)
        : heap(ctx), native(&calledNative), argumentCount(count) {}

    duk_hthread* heap;
    const Native* native;
    std::size_t argumentCount;
};

// Who hears of each call. An exception ends the script's evaluation, as one of a native does. Neither may call the
// heap.
class NativeListener {
public:
    virtual void before(const NativeCall& call) = 0;
    // Not after a call that ended in a script error.
    virtual void after(const NativeCall& call) = 0;

protected:
    ~NativeListener() = default;
};

// From ScriptObserver::heapOpened: the listener hears of all calls of this heap. One a process.
void TellOfNativeCalls(duk_hthread* ctx, NativeListener& listener);
// Nobody hears of calls from now on.
void ForgetNativeListener();

}  // namespace quillon
