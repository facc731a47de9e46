#pragma once

// What the script heap asks before every call, on the thread that calls; hence the C name. Non-zero when the native
// stack has less than 128 KiB left, and past a CallLimit: the heap then raises a script error instead of the call.
extern "C" int quillon_refuses_call(void);  // NOLINT(readability-redundant-declaration): duk_config.h has it too

namespace quillon {

// While it lives, the script heap makes only so many more calls, of scripts, native functions and protected ones. With
// it values can be read that might run a script otherwise. One at a time, under the effect's entry mutex.
class CallLimit {
public:
    explicit CallLimit(int calls);
    ~CallLimit();
    CallLimit(const CallLimit&) = delete;
    CallLimit& operator=(const CallLimit&) = delete;
};

// The system's part of it: whether the calling thread's native stack has less than 128 KiB left.
bool NativeStackIsLow();

}  // namespace quillon
