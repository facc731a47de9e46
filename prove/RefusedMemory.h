#pragma once

#include <algorithm>
#include <vector>

namespace quillon::prove {

// Refuses memory to one module or program, and to nobody else: a GL driver need not survive the lack of memory. Counted
// are the allocations by its own code and those that the C++ library makes for it. One refusal at a time, from all
// threads.
enum class Refused { onlyThatOne, allFromThere };

// From now on; the first allocation is 1. `code` is any address in the module's code.
void RefuseMemory(const void* code, long nth, Refused which);
// How many allocations were counted.
long EndRefusal();

// Which of `last` allocations to refuse: all, or about `most` of them, evenly chosen.
inline std::vector<long> Places(long last, long most) {
    std::vector<long> places;
    const long step = std::max(1L, last / most);
    for (long n = 1; n <= last; n += step) places.push_back(n);
    return places;
}

// Where the library of this source is loaded before a program, it reads this variable: "N" or "N+" for all from there.
inline constexpr const char* kRefusalVariable = "QUILLON_PROVE_REFUSES";

}  // namespace quillon::prove
