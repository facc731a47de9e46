// Planted once: an output that is written in place.

#include <set>

#include "Ground.h"
#include "Tool.h"

namespace quillon::prove {

namespace {

struct Command {
    const char* name;
    std::string arguments;
    const char* output;
    bool replaces;  // an output that is there already
};

const Command kCommands[] = {
    {"render", "render fx -i in.argb --size 16x9 --depth 8 -o out.argb", "out.argb", true},
    {"pack", "pack fx -o out.so", "out.so", true},
    {"new", "new made", "made", false},
};

// How often each is looked at, at most: the last calls are those that matter.
constexpr std::pair<const char*, int> kCalls[] = {{"write", 6},  {"pwrite64", 4}, {"fsync", 4},
                                                  {"rename", 3}, {"renameat", 3}, {"close", 3}};

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
    explicit Ground(const Command& tried) : command(tried) {
        tool.addEffectAndInput();
        tool.runWell(command.arguments);
        whole = Content(tool, command.output);
        Require(!whole.empty(), std::string(command.name) + " makes nothing");
        before = tool.list();
    }

    // How often the main thread of a run makes this call, at most `most`; 0 where it never does.
    int callsOf(const char* call) const {
        prepare();
        tool.run(command.arguments, std::string("strace -o calls.txt -e trace=") + call);
        const std::string calls = tool.read("calls.txt");
        std::filesystem::remove(tool.pathOf("calls.txt"));
        int count = 0;
        for (std::size_t at = 0; (at = calls.find(std::string(call) + "(", at)) != std::string::npos; ++at) ++count;
        return count;
    }

    // A run with this done to its nth call: the output is the old one, or the new one whole.
    void disturb(const char* call, int nth, const std::string& injection, bool isKilled) const {
        const std::string what = std::string(command.name) + ", " + call + " " + std::to_string(nth) + ", " + injection;
        NowAt(what);
        prepare();
        const Tool::Run result =
            tool.run(command.arguments, std::string("strace -o /dev/null -e trace=") + call + " -e inject=" + call +
                                            ":" + injection + ":when=" + std::to_string(nth));
        const std::string made = Content(tool, command.output);
        const std::string old = command.replaces ? "old" : "";
        Require(made == whole || made == old, what + ": the output is neither the old one nor the new one");
        Require(result.status != 0 || made == whole, what + ": no error, and no output");
        if (!isKilled)
            Require(result.status == 0 || result.status == 1 || result.status >= 128, what + ": " + result.err);
        if (isKilled) {
            prepare();
            tool.runWell(command.arguments);
        } else if (!command.replaces && made.empty()) {
            prepare();
            std::filesystem::create_directory(tool.pathOf(command.output));
        }
        Require(tool.list() == before, what + " leaves " + tool.list());
    }

private:
    void prepare() const {
        std::filesystem::remove_all(tool.pathOf(command.output));
        if (command.replaces) tool.write(command.output, "old");
    }

    const Command& command;
    Tool tool;
    std::string whole;
    std::string before;
};

}  // namespace

std::string Kills(bool isLong) {
    int kills = 0, faults = 0;
    for (const Command& command : kCommands) {
        const Ground ground(command);
        for (const auto& [call, most] : kCalls) {
            const int calls = ground.callsOf(call);
            for (int nth = isLong ? 1 : std::max(1, calls - most + 1); nth <= calls; ++nth) {
                ground.disturb(call, nth, "signal=KILL", /*isKilled=*/true);
                ++kills;
                if (std::string(call).find("write") == std::string::npos) continue;
                ground.disturb(call, nth, "error=ENOSPC", /*isKilled=*/false);
                ++faults;
            }
            for (const char* signal : {"INT", "TERM", "HUP", "XFSZ"}) {
                if (calls == 0 || std::string(call) == "close") continue;
                ground.disturb(call, calls, std::string("signal=") + signal, std::string(signal) == "XFSZ");
                ++kills;
            }
        }
    }
    return std::to_string(kills) + " kills, " + std::to_string(faults) + " times no room";
}

}  // namespace quillon::prove
