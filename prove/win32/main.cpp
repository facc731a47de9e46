// The rows that also run on Windows: one of them, in this process. The tests run each with a time limit, and count a
// crash as a failure.

#include <fmt/format.h>
#include <windows.h>

#include <cstdlib>
#include <exception>
#include <random>
#include <string_view>

#include "Ground.h"

namespace quillon::prove {

namespace {

struct PortableRow {
    std::string_view name;
    std::string (*run)(bool isLong);
};

constexpr PortableRow kRows[] = {{"hostile", Hostile}, {"threads", Threads}};

unsigned chosenSeed = 0;
std::string at;

int Main(std::string_view name, const char* seed) {
    chosenSeed = seed ? static_cast<unsigned>(std::strtoul(seed, nullptr, 10)) : std::random_device()() | 1u;
    for (const PortableRow& row : kRows) {
        if (row.name != name) continue;
        try {
            fmt::print("{} holds: {}\n", row.name, row.run(false));
            return 0;
        } catch (const std::exception& failure) {
            fmt::print("{} FAILS: {}, at: {}, with seed {}\n", row.name, failure.what(), at, chosenSeed);
            return 1;
        }
    }
    fmt::print(stderr, "prove: error: no row {}\n", name);
    return 2;
}

}  // namespace

unsigned Seed() {
    return chosenSeed;
}

void NowAt(const std::string& words) {
    at = words;
}

}  // namespace quillon::prove

int main(int argc, char** argv) {
    // A crash ends the process at once; else it starts a debugger, which waits for somebody.
    SetUnhandledExceptionFilter([](EXCEPTION_POINTERS*) -> LONG { return EXCEPTION_EXECUTE_HANDLER; });
    return quillon::prove::Main(argc > 1 ? argv[1] : "", argc > 2 ? argv[2] : nullptr);
}
