// The proving ground: runs the rows that are named, or all, and prints the table of their verdicts.

#include <fmt/format.h>
#include <malloc.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <vector>

#include "Ground.h"
#include "platform/TemporaryPath.h"

namespace quillon::prove {

namespace {

constexpr Row kRows[] = {
    {"load", "thousands of frames: the last is the first, memory stays level", Load, 300, 36000},
    {"instances", "made, rendered, copied, saved and removed in any order: nothing is left", Instances, 300, 900},
    {"restarts", "a script started anew leaves what its first start left", Restarts, 300, 900},
    {"threads", "four threads over mixed instances give the frames of one", Threads, 600, 1800},
    {"copies", "ten copies and ten modules in one process share nothing, and loads leave what is named", Copies, 300,
     3600},
    {"sizes", "frames of odd sizes between guard pages equal the plain rule", Sizes, 300, 900},
    {"extremes", "NaN, infinities and the ends of floats are kept or mapped as documented", Extremes, 300, 300},
    {"memory", "wherever memory is refused, the module lives and the next frame is right", Memory, 600, 7200},
    {"tool-memory", "wherever memory is refused, the tool ends with an error or with its result", ToolMemory, 600,
     7200},
    {"gl", "whatever GL refuses, the module lives, and renders when it is back", RefusedGL, 300, 300},
    {"hostile", "whatever a script does, the process lives and a good effect renders next", Hostile, 600, 7200},
    {"damaged", "damaged packages and modules end in an error or are empty", Damaged, 600, 7200},
    {"determinism", "every run gives the same bits, with any number of the driver's threads", Determinism, 600, 1800},
    {"metamorphic", "shaders that are written in another way give the same bits", Metamorphic, 600, 3600},
    {"kills", "killed or out of room at any write: the old output or the new one, no leftovers", Kills, 600, 7200},
    {"sequences", "killed and resumed again and again, a sequence is that of one run", Sequences, 300, 1800},
    {"output", "where nothing can be written: an error and exit status 1, and what is there stays", Output, 300, 300},
};

// Written by a row's process, read by the driver, whatever has become of the process.
struct Report {
    char at[512];
    unsigned seed;
    char words[2048];
};
Report* report = nullptr;
unsigned chosenSeed = 0;

template <std::size_t Room>
void Note(char (&place)[Room], const std::string& words) {
    std::strncpy(place, words.c_str(), Room - 1);
}

[[noreturn]] void RunRow(const Row& row, bool isLong, const std::filesystem::path& temporary) {
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);  // with the driver
    setenv("TMPDIR", temporary.c_str(), 1);
    int status = 0;
    try {
        Note(report->words, row.run(isLong));
    } catch (const std::exception& failure) {
        Note(report->words, failure.what());
        status = 1;
    }
    std::exit(status);  // as a host ends: with all that modules do then
}

struct Verdict {
    bool isHeld = false;
    std::string words;
    double cpuSeconds = 0;
};

Verdict Judge(const Row& row, bool isLong, const std::filesystem::path& temporary) {
    std::filesystem::create_directory(temporary);
    *report = {};
    const pid_t child = fork();
    if (child == 0) RunRow(row, isLong, temporary);
    const int limit = isLong ? row.longSeconds : row.seconds;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(limit);
    int status = 0;
    rusage usage{};
    bool isHanging = false;
    while (wait4(child, &status, WNOHANG, &usage) == 0) {
        if (!isHanging && std::chrono::steady_clock::now() > deadline) {
            isHanging = true;
            kill(-child, SIGKILL);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    kill(-child, SIGKILL);  // whoever it has left running

    const auto seconds = [](const timeval& time) { return static_cast<double>(time.tv_sec) + 1e-6 * time.tv_usec; };
    Verdict verdict{false, report->words, seconds(usage.ru_utime) + seconds(usage.ru_stime)};
    std::string at = *report->at ? fmt::format(", at: {}", report->at) : "";
    if (report->seed != 0) at += fmt::format(", with --seed={}", report->seed);
    if (isHanging)
        verdict.words = fmt::format("hangs after {} s{}", limit, at);
    else if (WIFSIGNALED(status))
        verdict.words = fmt::format("crashes: {}{}", strsignal(WTERMSIG(status)), at);
    else if (WEXITSTATUS(status) != 0)
        verdict.words += at;
    else if (!std::filesystem::is_empty(temporary))
        verdict.words = "leaves files in the temporary folder";
    else
        verdict.isHeld = true;
    return verdict;
}

int Main(const std::vector<std::string>& arguments) {
    std::vector<const Row*> chosen;
    bool isLong = false;
    for (const std::string& argument : arguments) {
        if (argument.starts_with("--seed=") && argument.find_first_not_of("0123456789", 7) == std::string::npos) {
            chosenSeed = static_cast<unsigned>(std::strtoul(argument.c_str() + 7, nullptr, 10));
            continue;
        }
        const auto* const row =
            std::ranges::find(kRows, argument, [](const Row& each) { return std::string(each.name); });
        if (argument == "--long") {
            isLong = true;
        } else if (row != std::end(kRows)) {
            chosen.push_back(row);
        } else {
            fmt::print(stderr, "prove: error: no row {}; there are:\n", argument);
            for (const Row& each : kRows) fmt::print(stderr, "  {:<12} {}\n", each.name, each.holds);
            return 2;
        }
    }
    if (chosen.empty())
        for (const Row& row : kRows) chosen.push_back(&row);

    report =
        static_cast<Report*>(mmap(nullptr, sizeof(Report), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    const TemporaryFolder folder;
    int failures = 0;
    double cpuSeconds = 0;
    for (const Row* row : chosen) {
        const Verdict verdict = Judge(*row, isLong, folder.path() / row->name);
        fmt::print("{:<12} {:<6} {:>7.1f} s CPU  {}\n", row->name, verdict.isHeld ? "holds" : "FAILS",
                   verdict.cpuSeconds,
                   verdict.isHeld ? verdict.words : fmt::format("{} ({})", verdict.words, row->holds));
        std::fflush(stdout);
        failures += verdict.isHeld ? 0 : 1;
        cpuSeconds += verdict.cpuSeconds;
    }
    fmt::print("{} of {} rows hold, {:.0f} s CPU\n", chosen.size() - static_cast<std::size_t>(failures), chosen.size(),
               cpuSeconds);
    return failures == 0 ? 0 : 1;
}

}  // namespace

unsigned Seed() {
    return report->seed = chosenSeed != 0 ? chosenSeed : std::random_device()() | 1u;
}

void NowAt(const std::string& words) {
    Note(report->at, words + std::string(1, '\0'));
}

std::size_t ResidentBytes() {
    malloc_trim(0);
    std::ifstream status("/proc/self/status");
    for (std::string key; status >> key;)
        if (std::size_t kibibytes = 0; key == "RssAnon:" && status >> kibibytes) return kibibytes << 10;
    throw std::runtime_error("/proc/self/status says nothing of memory");
}

std::string RequireLevel(std::size_t before, const std::string& when) {
    const std::size_t after = ResidentBytes();
    const auto grown = static_cast<std::ptrdiff_t>(after - before) / 1024;
    const std::string figure = fmt::format("{:+} KiB {}", grown, when);
    Require(after < before + kMostGrowth, "memory grows: " + figure);
    return figure;
}

}  // namespace quillon::prove

int main(int argc, char** argv) {
    return quillon::prove::Main({argv + 1, argv + argc});
}
