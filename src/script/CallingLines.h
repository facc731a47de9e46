#pragma once

#include <cstddef>
#include <span>

struct duk_hthread;

namespace quillon {

// Where the script is now, seen from a native function or from within the heap: the lines of the functions that run and
// are script, in the prepared source, the innermost one first. Returns how many it has written. No code of the script
// runs, and nothing is raised.
std::size_t CallingLines(duk_hthread* ctx, std::span<int> lines);

// The innermost one; 0 when no script runs.
int CallingLine(duk_hthread* ctx);

}  // namespace quillon
