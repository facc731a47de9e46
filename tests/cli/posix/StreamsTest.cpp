#include <sys/stat.h>

#include <algorithm>
#include <sstream>
#include <utility>

#include "../ToolTest.h"

// What becomes of outputs that are not plain files, and of a run whose processes are ended.

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

// The later one to finish a frame wins; what is there at any time is one run's whole frame.
TEST_F(Streams, AreWholeWhenTwoRunsWriteThem) {
    const std::string render = "render copy --size 64x64 --depth 8 -o o%d.argb --frames 0-99 ";
    std::vector<std::string> pictures;
    for (const std::uint8_t value : {10, 200}) {
        const std::string name = "in" + std::to_string(value) + ".argb";
        writeSamples(name, std::vector<std::uint8_t>(64 * 64 * 4, value));
        pictures.push_back(readFile(name));
    }
    const ToolRun both =
        run(render + "-i in10.argb & '" + tool + "' " + render + "-i in200.argb -j 2 || exit 9; wait $! )", "(");
    EXPECT_EQ(both.status, 0);
    EXPECT_EQ(both.err, "");
    for (int i = 0; i < 100; ++i) {
        const std::string found = readFile("o" + std::to_string(i) + ".argb");
        EXPECT_TRUE(found == pictures[0] || found == pictures[1]) << i;
    }
    EXPECT_EQ(list().size(), 104u);
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
