#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace quillon::prove {

// A row of the table. It runs in a separate process, with an empty folder for temporary files that must be empty
// again at its end.
struct Row {
    const char* name;
    const char* holds;                // what is proved, in a few words
    std::string (*run)(bool isLong);  // gives its figures, in a few words; throws where something does not hold
    int seconds;                      // after which the short and the long form count as hanging
    int longSeconds;
};

std::string Load(bool isLong);
std::string Instances(bool isLong);
std::string Restarts(bool isLong);
std::string Threads(bool isLong);
std::string Copies(bool isLong);
std::string Sizes(bool isLong);
std::string Extremes(bool isLong);
std::string Memory(bool isLong);
std::string ToolMemory(bool isLong);
std::string RefusedGL(bool isLong);
std::string Hostile(bool isLong);
std::string Damaged(bool isLong);
std::string Determinism(bool isLong);
std::string Metamorphic(bool isLong);
std::string Kills(bool isLong);
std::string Sequences(bool isLong);
std::string Output(bool isLong);

// Throws the words unless `isTrue`.
inline void Require(bool isTrue, const std::string& words) {
    if (!isTrue) throw std::runtime_error(words);
}

// Of what is random in the row: another one each time, or that of `--seed`. The verdict of a row that fails names it.
unsigned Seed();

// What the driver says beside the verdict when the row crashes or hangs.
void NowAt(const std::string& words);

// This process's private memory that is in use, after all that is free was given back to the system.
std::size_t ResidentBytes();

// Resident memory may grow by so much: what is less is lost in the noise of allocators and drivers.
inline constexpr std::size_t kMostGrowth = std::size_t{2} << 20;
// Throws when it has grown by more. Gives the figure, such as "+12 KiB".
std::string RequireLevel(std::size_t before, const std::string& when);

}  // namespace quillon::prove
