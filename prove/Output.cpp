// Planted once: a result whose stream is not looked at when the tool ends (a full and a closed standard output).

#include <unistd.h>

#include "Ground.h"
#include "Tool.h"

namespace quillon::prove {

namespace {

const std::string kRender = "render fx -i in.argb --size 16x9 --depth 8 -o ";

// Each prints something, so that the end of its standard output is an error.
const std::string kPrinters[] = {
    "--help",
    "--version",
    "docs",
    "params fx",
    "params fx --json",
    "info fx",
    "info fx --json",
    "doctor",
    "check fx --format json",
    "check fx --format sarif",
    "chart -o made.png --size 4x3",
    "new made",
    "pack fx -o made.so",
    kRender + "made.argb",
    kRender + "made%d.argb --frames 0-3 -j 2",
    "compare other.argb in.argb --size 16x9 --depth 8",
    "preview fx --no-browser",
};

struct Refusal {
    std::string arguments;
    const char* before;  // what the tool starts under
    const char* words;
    int status = 1;
};

// A superuser writes everywhere; without this right it is a user like any other.
const char* const kUser = "setpriv --bounding-set=-all";

const Refusal kRefusals[] = {
    {kRender + "readonly/new.argb", kUser, "readonly/new.argb: cannot be written: Permission denied"},
    {kRender + "readonly/kept.argb", kUser, "readonly/kept.argb: cannot be written: Permission denied"},
    {kRender + "readonly/%d.argb --frames 0-9", kUser, "readonly/0.argb: cannot be written: Permission denied"},
    {kRender + "readonly/%d.argb --frames 0-9 -j 2", kUser, ".argb: cannot be written: Permission denied"},
    {"pack fx -o readonly/new.so", kUser, "readonly/new.so: cannot be written: Permission denied"},
    {"chart -o readonly/new.png", kUser, "readonly/new.png: cannot be written: Permission denied"},
    {"new readonly/made", kUser, "readonly/made: cannot be made: Permission denied"},
    {"params fx", "TMPDIR=readonly setpriv --bounding-set=-all", "no folder for temporary files: Permission denied"},
    {kRender + "protected.argb", "", "protected.argb: is write-protected; choose another place with -o"},
    {kRender + "full.argb", "", "full.argb: cannot be written: No space left on device"},
    {kRender + "folder.argb", "", "folder.argb: cannot be written: Is a directory"},
    {kRender + "fx/out.argb", "", "fx/out.argb: is in the effect's folder", 2},
    {kRender + "fx.argb/out.argb", "", "fx.argb/out.argb: "},
    {"chart -o large.png )", "( ulimit -f 1;", "large.png: cannot be written: File too large"},
    {"pack fx -o large.so )", "( ulimit -f 1;", "File too large"},
    {"new large )", "( ulimit -f 1;", "cannot be written: File too large"},
};

class Outputs {
public:
    Outputs() {
        tool.addEffectAndInput();
        tool.write("other.argb", std::string(576, '\7'));
        for (const char* name : {"readonly", "folder.argb"}) std::filesystem::create_directory(tool.pathOf(name));
        for (const char* name : {"readonly/kept.argb", "protected.argb"}) tool.write(name, "kept");
        std::filesystem::permissions(tool.pathOf("protected.argb"), std::filesystem::perms::owner_read);
        std::filesystem::permissions(tool.pathOf("readonly"), std::filesystem::perms(0555));
        std::filesystem::create_symlink("/dev/full", tool.pathOf("full.argb"));
        std::filesystem::create_symlink("same.argb", tool.pathOf("link.argb"));
        before = tool.list();
    }
    ~Outputs() { std::filesystem::permissions(tool.pathOf("readonly"), std::filesystem::perms::owner_all); }

    void refuseStandardOutput(const std::string& arguments, const std::string& redirection) const {
        const Tool::Run result = run(arguments + " " + redirection + " )", "( timeout 60");
        Require(
            result.status == 1 && result.err.find("error: standard output: cannot be written: ") != std::string::npos,
            now + " ends with " + std::to_string(result.status) + ": " + result.err);
        for (const char* made :
             {"made", "made.so", "made.png", "made.argb", "made0.argb", "made1.argb", "made2.argb", "made3.argb"})
            std::filesystem::remove_all(tool.pathOf(made));
        requireUnchanged();
    }

    void refuse(const Refusal& place) const {
        std::string start = place.before;
        if (const std::size_t at = start.find(kUser); at != std::string::npos && geteuid() != 0) start.resize(at);
        const Tool::Run result = run(place.arguments, start);
        Require(result.status == place.status, now + " ends with " + std::to_string(result.status) + ": " + result.err);
        Require(result.err.find(place.words) != std::string::npos, now + ": " + result.err);
        for (const char* name : {"readonly/kept.argb", "protected.argb"})
            Require(tool.read(name) == "kept", now + ": another " + name);
        requireUnchanged();
    }

    // Whichever name leads to the input: it is read before it is replaced.
    void replaceInput() const {
        run(kRender + "wanted.argb", "");
        const std::string wanted = tool.read("wanted.argb");
        for (const char* output : {"same.argb", "./fx/../same.argb", "link.argb", "%d.argb --frames 0-3 -j 2"}) {
            for (const char* input : {"same", "0", "1", "2", "3"})
                std::filesystem::copy_file(tool.pathOf("in.argb"), tool.pathOf(std::string(input) + ".argb"));
            const bool isSequence = *output == '%';
            tool.runWell(std::string("render fx --size 16x9 --depth 8 -i ") + (isSequence ? "%d.argb" : "same.argb") +
                         " -o " + output);
            NowAt(std::string("output on input, ") + output);
            for (const char* made : {"0", "1", "2", "3"})
                Require(tool.read((isSequence ? made : "same") + std::string(".argb")) == wanted,
                        std::string("output on input: another picture, ") + output);
            for (const char* input : {"same", "0", "1", "2", "3"})
                std::filesystem::remove(tool.pathOf(std::string(input) + ".argb"));
        }
        std::filesystem::remove(tool.pathOf("wanted.argb"));
        requireUnchanged();
    }

    void loseFolder(const char* processes) const {
        const Tool::Run result = run(kRender + "gone/%d.argb --frames 0-99999 " + processes +
                                         " & tool=$!; while [ ! -e gone/3.argb ]; do "
                                         "sleep 0.02; done; until rm -r gone 2>/dev/null; do :; done; wait $tool )",
                                     "( mkdir gone; timeout 60");
        Require(result.status == 1 &&
                    result.err.find(".argb: cannot be written: No such file or directory") != std::string::npos,
                now + " ends with " + std::to_string(result.status) + ": " + result.err);
        requireUnchanged();
    }

private:
    Tool::Run run(const std::string& arguments, const std::string& environment) const {
        now = environment + " " + arguments;
        NowAt(now);
        return tool.run(arguments, environment);
    }
    void requireUnchanged() const { Require(tool.list() == before, now + " leaves " + tool.list()); }

    Tool tool;
    std::string before;
    mutable std::string now;
};

}  // namespace

std::string Output(bool) {
    const Outputs outputs;
    for (const std::string& arguments : kPrinters)
        for (const char* redirection : {">/dev/full", ">&-"}) outputs.refuseStandardOutput(arguments, redirection);
    for (const Refusal& place : kRefusals) outputs.refuse(place);
    outputs.replaceInput();
    for (const char* processes : {"", "-j 2"}) outputs.loseFolder(processes);
    return std::to_string(std::size(kPrinters)) + " commands without standard output, " +
           std::to_string(std::size(kRefusals)) + " places refused";
}

}  // namespace quillon::prove
