#include <sys/stat.h>

#include <algorithm>
#include <sstream>
#include <utility>

#include "../ToolTest.h"

// What becomes of outputs that are not plain files, and of temporary files when the tool is ended.

namespace quillon::test {

namespace {

class Streams : public ToolTest {
protected:
    Streams() {
        addCopyEffect();
        writeSamples<std::uint8_t>("in.argb", kPixels);
    }

    const std::vector<std::uint8_t> kPixels = {255, 1, 2, 3};
    const std::string kRender = "render copy -i in.argb --size 1x1 --depth 8 -o ";
};

TEST_F(Streams, AreReportedWhenResultsCannotBeWritten) {
    for (const std::string arguments :
         {"params copy >/dev/full", "params copy --json >/dev/full", "check copy >&-", "--help >/dev/full",
          "chart -o chart.png --size 1x1 >&-", "pack copy -o copy.so >/dev/full"}) {
        const ToolRun result = run(arguments + " )", "(");
        EXPECT_EQ(result.status, 1) << arguments;
        EXPECT_NE(result.err.find("quillon: error: standard output: cannot be written: "), std::string::npos)
            << arguments << ": " << result.err;
    }
}

TEST_F(Streams, AreFollowedToWhatTheyLeadTo) {
    std::filesystem::create_directory(pathOf("there"));
    std::filesystem::create_symlink("there/new.argb", pathOf("link.argb"));
    ASSERT_EQ(run(kRender + "link.argb").err, "");
    EXPECT_TRUE(std::filesystem::is_symlink(pathOf("link.argb")));
    EXPECT_EQ(readSamples<std::uint8_t>("there/new.argb"), kPixels);

    ASSERT_EQ(mkfifo(pathOf("pipe.argb").c_str(), 0600), 0);
    ASSERT_EQ(run(kRender + "pipe.argb & cat pipe.argb >copied; wait )", "(").err, "");
    EXPECT_TRUE(std::filesystem::is_fifo(pathOf("pipe.argb")));
    EXPECT_EQ(readSamples<std::uint8_t>("copied"), kPixels);
}

TEST_F(Streams, AreRefusedWhereNothingMayBeWritten) {
    writeFile("kept.argb", "kept");
    std::filesystem::permissions(pathOf("kept.argb"), std::filesystem::perms::owner_read);
    std::filesystem::create_symlink("/dev/full", pathOf("full.argb"));
    std::filesystem::create_directory(pathOf("folder.argb"));
    const std::pair<const char*, const char*> kRows[] = {
        {"kept.argb", "kept.argb: is write-protected; choose another place with -o"},
        {"full.argb", "full.argb: cannot be written: No space left on device"},
        {"folder.argb", "folder.argb: cannot be written: Is a directory"},
        {"copy/out.argb", "copy/out.argb: is in the effect's folder"},
    };
    for (const auto& [output, words] : kRows) {
        const ToolRun result = run(kRender + output);
        EXPECT_NE(result.status, 0) << output;
        EXPECT_NE(result.err.find(words), std::string::npos) << result.err;
    }
    EXPECT_EQ(readFile("kept.argb"), "kept");
    const ToolRun limited = run("chart -o large.png )", "( ulimit -f 1;");
    EXPECT_EQ(limited.status, 1);
    EXPECT_NE(limited.err.find("large.png: cannot be written: File too large"), std::string::npos) << limited.err;
    EXPECT_FALSE(exists("large.png"));
    EXPECT_EQ(list(), (std::vector<std::string>{"copy", "folder.argb", "full.argb", "in.argb", "kept.argb"}));
}

TEST_F(Streams, LeaveNoTemporaryFilesWhenTheToolIsEnded) {
    addEffect("endless", {{"fx.js", "while (true);"}});
    std::filesystem::create_directory(pathOf("tmp"));
    const auto leavesNothing = [this] { return std::filesystem::is_empty(pathOf("tmp")); };
    for (const std::string signal : {"TERM", "HUP", "ABRT", "KILL"}) {
        run("params endless & tool=$!; while [ -z \"$(find tmp -name '*.so')\" ]; do sleep 0.02; done; kill -" +
                signal + " $tool; wait $tool )",
            "( TMPDIR=tmp ");
        EXPECT_EQ(leavesNothing(), signal != "KILL") << signal;
    }
    ASSERT_EQ(run("check copy", "TMPDIR=tmp").err, "");
    EXPECT_TRUE(leavesNothing());
}

// The shell's script finds the processes of -j as children of the one that it has started.
TEST_F(Streams, AreWholeWhenProcessesOfARunAreEnded) {
    const std::string render =
        "render copy -i in.argb --size 1x1 --depth 8 -o o%d.argb --frames 0-99999 -j 2 "
        "--progress json & tool=$!; while [ ! -e o0.argb ] || [ ! -e o50000.argb ]; do sleep 0.05; "
        "done; set -- $(cat /proc/$tool/task/*/children); ";
    const auto clear = [this] {
        for (const std::string& name : list())
            if (name.starts_with("o")) std::filesystem::remove(pathOf(name));
    };
    const ToolRun died = run(render + "kill -KILL $1; wait $tool )", "(");
    EXPECT_EQ(died.status, 1);
    EXPECT_NE(died.err.find("quillon: error: a process of -j was killed or crashed, which had frames 0 to 49999"),
              std::string::npos)
        << died.err.substr(0, 2000);
    // What is printed is there, and the other process has left its piece.
    std::istringstream printedNames(died.out);
    for (std::string name; printedNames >> name;) EXPECT_TRUE(exists(name)) << name;
    EXPECT_LT(std::ranges::count(died.out, '\n'), 100000);
    for (const auto& [signal, status] : {std::pair("INT", 130), std::pair("TERM", 143)}) {
        clear();
        // A background process of a shell ignores interrupts unless it says otherwise, as `env` can.
        const ToolRun ended = run(render + "kill -" + signal +
                                      " $tool; wait $tool; status=$?; while [ -e /proc/$1 ] || "
                                      "[ -e /proc/$2 ]; do sleep 0.02; done; exit $status )",
                                  "( env --default-signal=INT");
        EXPECT_EQ(ended.status, status);
        EXPECT_NE(ended.err.find("frames; the same command with --resume goes on"), std::string::npos);
        for (const std::string& name : list()) EXPECT_FALSE(name.starts_with(".")) << name;
    }
    clear();
}

}  // namespace

}  // namespace quillon::test
