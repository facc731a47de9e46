// Planted once: an output that is written in place; a preview whose module stays after its end; a worker that is waited
// for although it cannot be asked.

#include <map>
#include <set>
#include <sstream>

#include "Ground.h"
#include "Tool.h"

namespace quillon::prove {

namespace {

struct Command {
    const char* name;
    std::string arguments;
    const char* output;  // none for a preview, which writes only temporary files
    bool replaces;       // an output that is there already
    const char* before = "";
};

// The page's address comes when the effect is loaded. The pipe ends with the last of the processes.
const char* const kUntilShown =
    ">address & tool=$!; for i in $(seq 1000); do [ ! -s address ] && kill -0 $tool 2>/dev/null || break; sleep 0.02; "
    "done; kill $tool; wait $tool; rm address ) 2>&1 | cat )";

const Command kCommands[] = {
    {"render", "render fx -i in.argb --size 16x9 --depth 8 -o out.argb", "out.argb", true},
    {"pack", "pack fx -o out.so", "out.so", true},
    {"new", "new made", "made", false},
    {"preview", std::string("preview fx --set v=0.5 --no-browser ") + kUntilShown, "", false,
     "( ( env --default-signal=INT"},
};

struct Call {
    const char* name;
    int most;               // how often it is looked at: the last calls are those that matter
    bool makesOutput;       // others are left out now and then
    bool isRefused = true;  // gets no room too, not only a kill
};
// A close that fails has closed its descriptor, while an injected error leaves it open: a pipe's reader would wait for
// its end in vain.
constexpr Call kCalls[] = {{"write", 40, true},    {"writev", 40, true}, {"fsync", 8, true},
                           {"rename", 6, true},    {"mkdir", 3, true},   {"pwrite64", 40, false},
                           {"renameat", 3, false}, {"openat", 2, false}, {"close", 3, false, false}};

// All bytes of a file, or of the files in a folder; empty when there is neither.
std::string Content(const Tool& tool, const std::string& name) {
    if (!std::filesystem::is_directory(tool.pathOf(name))) return tool.read(name);
    std::set<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(tool.pathOf(name)))
        files.insert(entry.path().filename().string());
    std::string content;
    for (const std::string& file : files) content += file + "\n" + tool.read(name + "/" + file) + "\n";
    return content;
}

class Ground {
public:
    explicit Ground(const Command& tried) : command(tried), hasOutput(*tried.output != '\0') {
        tool.addEffectAndInput();
        std::filesystem::create_directory(tool.pathOf("tmp"));
        runWell();
        if (hasOutput) whole = Content(tool, command.output);
        Require(!hasOutput || !whole.empty(), std::string(command.name) + " makes nothing");
        before = leftBesideOutput();
    }

    // How often one thread of a run makes this call, at most; 0 where none ever does.
    int callsOf(const std::string& call) const {
        prepare();
        run("-o calls.txt -e trace=" + call);
        std::istringstream lines(tool.read("calls.txt"));
        std::filesystem::remove(tool.pathOf("calls.txt"));
        std::map<std::string, int> counts;
        for (std::string line; std::getline(lines, line);)
            if (line.find(" " + call + "(") != std::string::npos) ++counts[line.substr(0, line.find(' '))];
        int most = 0;
        for (const auto& [thread, count] : counts) most = std::max(most, count);
        return most;
    }

    // A run with this done to the nth call of any thread: the output is the old one, or the new one whole.
    void disturb(const std::string& call, int nth, const std::string& injection) const {
        const std::string what = std::string(command.name) + ", " + call + " " + std::to_string(nth) + ", " + injection;
        NowAt(what);
        prepare();
        const Tool::Run result = run("-o /dev/null -e trace=" + call + " -e inject=" + call + ":" + injection +
                                     ":when=" + std::to_string(nth));
        if (hasOutput) {
            const std::string made = Content(tool, command.output), old = command.replaces ? "old" : "";
            Require(made == whole || made == old, what + ": the output is neither the old one nor the new one");
            Require(result.status != 0 || made == whole, what + ": no error, and no output");
        }
        if (injection == "signal=KILL") {
            prepare();
            runWell();
        } else {
            Require(result.status < 2 || result.status >= 128, what + ": " + result.err);
            Require(result.err.find("no end after") == std::string::npos, what + ": waits for what never comes");
        }
        const std::string left = leftBesideOutput();
        Require(left == before, what + " leaves " + left);
    }

private:
    void prepare() const {
        if (!hasOutput) return;
        std::filesystem::remove_all(tool.pathOf(command.output));
        if (command.replaces) tool.write(command.output, "old");
    }

    std::string leftBesideOutput() const {
        if (hasOutput) std::filesystem::remove_all(tool.pathOf(command.output));
        return tool.list();
    }

    // The tracer is no parent, so that whoever ends the tool ends it and not the tracer.
    Tool::Run run(const std::string& trace) const {
        const std::string tracer = hasOutput ? " strace -f " : " strace -D -f ";
        return tool.run(command.arguments, command.before + std::string(" env TMPDIR=tmp") + tracer + trace);
    }
    void runWell() const { tool.runWell(command.arguments, command.before + std::string(" env TMPDIR=tmp")); }

    const Command& command;
    const bool hasOutput;
    Tool tool;
    std::string whole;
    std::string before;
};

// Ended while its script never ends, so that the module which it has packed is there, and so is the worker.
int EndWhileLoading(const std::string& command) {
    const Tool tool;
    tool.addEffectAndInput();
    tool.write("fx/fx.js", "while (true);");
    tool.runWell("new good");
    std::filesystem::create_directory(tool.pathOf("tmp"));
    const std::string before = tool.list();
    int ends = 0;
    for (const char* victim : {"tool", "worker"})
        for (const std::string signal : {"INT", "TERM", "HUP", "ABRT", "KILL"}) {
            const std::string what = command + ", SIG" + signal + " to the " + victim;
            NowAt(what);
            const std::string end = (std::string(victim) == "worker" ? "[ -z \"$worker\" ] || kill -" : "kill -") +
                                    signal + " $" + victim + "; kill $tool; wait $tool; ";
            tool.run(command +
                         " & tool=$!; while [ -z \"$(find tmp -name '*.so')\" ]; do sleep 0.02; done; "
                         "worker=$(cat /proc/$tool/task/*/children); " +
                         end + "while [ -n \"$worker\" ] && [ -e /proc/${worker% } ]; do sleep 0.02; done )",
                     "( env --default-signal=INT TMPDIR=tmp");
            if (signal == "KILL") tool.runWell("params good", "TMPDIR=tmp");
            const std::string left = tool.list();
            Require(left == before, what + " leaves " + left);
            ++ends;
        }
    return ends;
}

}  // namespace

std::string Kills(bool isLong) {
    int kills = 0, faults = 0;
    for (const Command& command : kCommands) {
        const Ground ground(command);
        for (const auto& [call, most, makesOutput, isRefused] : kCalls) {
            const int calls = ground.callsOf(call);
            for (int nth = isLong ? 1 : std::max(1, calls - most + 1); nth <= calls; ++nth) {
                ground.disturb(call, nth, "signal=KILL");
                ++kills;
                if (!isRefused || (!makesOutput && !isLong)) continue;
                ground.disturb(call, nth, "error=ENOSPC");
                ++faults;
            }
            for (const char* signal : {"INT", "TERM", "HUP", "XFSZ"}) {
                if (calls == 0 || !makesOutput) continue;
                ground.disturb(call, calls, std::string("signal=") + signal);
                ++kills;
            }
        }
    }
    for (const char* command : {"preview fx --no-browser >/dev/null", "params fx", "pack fx -o out.so"})
        kills += EndWhileLoading(command);
    return std::to_string(kills) + " kills, " + std::to_string(faults) + " times no room";
}

}  // namespace quillon::prove
