// What depends on the machine that the tool runs on, and on the user's shell.

#include "../ToolTest.h"

namespace quillon::test {

namespace {

using Machine = ToolTest;

TEST_F(Machine, IsExaminedAndLackingPartsComeWithARemedy) {
    const ToolRun well = run("doctor");
    EXPECT_EQ(well.status, 0) << well.out;
    EXPECT_NE(well.out.find("\nok       OpenGL"), std::string::npos) << well.out;
    EXPECT_NE(well.out.find("lib/quillon_module.so\n"), std::string::npos);
    EXPECT_EQ(well.out.substr(0, well.out.find("\n\n") + 1), run("--version").out);

    const ToolRun poor = run("doctor", "LIBGL_DRIVERS_PATH=none PATH=/none");
    EXPECT_EQ(poor.status, 1);
    EXPECT_NE(poor.out.find("\nbroken   OpenGL"), std::string::npos) << poor.out;
    EXPECT_NE(poor.out.find("apt install libegl1 libgl1-mesa-dri"), std::string::npos);
    EXPECT_NE(poor.out.find("\nmissing  ffprobe"), std::string::npos);
}

// As bash calls the function while a user types.
TEST_F(Machine, CompletesTheCommandLineInBash) {
    writeFile("picture one.png", "");
    writeFile("complete", run("completion bash").out +
                              "\nCOMP_WORDS=(quillon \"$@\")\nCOMP_CWORD=$#\n_quillon\n"
                              "printf '%s\\n' \"${COMPREPLY[@]}\"\n");
    const struct {
        const char* typed;
        const char* offered;
    } kCases[] = {
        {"che", "check\n"},
        {"check --lev", "--level\n"},
        {"check --format ''", "text\njson\nsarif\n"},
        {"render --host p", "premiere\n"},
        {"new --template two", "two-layers\n"},
        {"docs QL_getT", "QL_getTime\n"},
        {"completion z", "zsh\n"},
        {"render fx -i pic", "picture one.png\n"},
        {"render fx --set ''", "\n"},
        {"work", "\n"},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.typed);
        const std::string command = "cd '" + pathOf("") + "' && bash ./complete " + row.typed + " 2>&1";
        std::string offered;
        std::FILE* const shell = popen(command.c_str(), "r");
        ASSERT_NE(shell, nullptr);
        for (int c; (c = std::fgetc(shell)) != EOF;) offered += static_cast<char>(c);
        pclose(shell);
        EXPECT_EQ(offered, row.offered);
    }
    for (const char* shell : {"zsh", "fish", "powershell"}) {
        const std::string script = run(std::string("completion ") + shell).out;
        for (const char* word : {"compare", "exr-compression", "after-effects", "QL_getTime"})
            EXPECT_NE(script.find(word), std::string::npos) << shell << ": " << word;
    }
    EXPECT_EQ(run("completion tcsh").status, 2);
}

}  // namespace

}  // namespace quillon::test
