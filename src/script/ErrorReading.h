#pragma once

#include <string>

struct duk_hthread;

namespace quillon {

// What a script has thrown.
struct ThrownError {
    std::string message;  // such as "ReferenceError: identifier 'x' undefined"; never empty
    int line = 0;         // of the evaluated text, from 1; 0: not known
};

// Keeps what ReadThrownError needs and scripts could replace. Once for a heap, before its first script; within a
// protected call, since it raises a script error when there is no memory.
void PrepareErrorReading(duk_hthread* ctx);

// Reads the value on top of the stack, which stays. No code of the script runs: a getter, a proxy or toString() may
// never return, so what only they could give is left out. Throws std::bad_alloc.
ThrownError ReadThrownError(duk_hthread* ctx);

}  // namespace quillon
