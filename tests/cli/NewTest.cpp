// New effects from templates: each one is an effect that nothing has to be added to.

#include <algorithm>

#include "ToolTest.h"

namespace quillon::test {

namespace {

std::vector<std::string> TemplateNames() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(SourceFolder() / "share/templates"))
        names.push_back(entry.path().filename().string());
    std::ranges::sort(names);
    return names;
}

class NewFromTemplate : public ToolTest, public ::testing::WithParamInterface<std::string> {};

TEST_P(NewFromTemplate, RendersChecksAndPacksAtOnce) {
    ASSERT_EQ(run("new \"My effect\" --template " + GetParam()).out, "My effect\n");
    // What the deeper levels look at is the same on every system, and takes minutes under Wine. The address sanitizer
    // keeps freed memory, which the deepest one takes for growth.
#if defined(__SANITIZE_ADDRESS__)
    const std::string level = "4";
#else
    const std::string level = cli::kOwnModuleKind.ending == std::string(".so") ? "5" : "3";
#endif
    const ToolRun checked = run("check --level " + level + " --deny-warnings \"My effect\"");
    EXPECT_EQ(checked.out, "My effect: nothing wrong\n");
    EXPECT_EQ(checked.err, "");
    run("chart -o in.png --size 64x36");
    EXPECT_EQ(run("render \"My effect\" -i in.png -o out.png").out, "out.png\n");
    const std::string module = Module("mine");
    const ToolRun packed = run("pack --list \"My effect\" -o " + module);
    EXPECT_EQ(packed.out.substr(0, module.size() + 1), module + "\n") << packed.err;
    EXPECT_EQ(packed.out.find("jsconfig.json"), std::string::npos);
    EXPECT_NE(run("info " + module).out.find("QLVMyeffect"), std::string::npos);
    EXPECT_NE(run("info " + module).out.find("template: this tool's\n"), std::string::npos);
    EXPECT_TRUE(exists("My effect/quillon.d.ts"));
}

INSTANTIATE_TEST_SUITE_P(Templates, NewFromTemplate, ::testing::ValuesIn(TemplateNames()), [](const auto& row) {
    std::string name = row.param;
    std::erase(name, '-');
    return name;
});

using New = ToolTest;

TEST_F(New, RefusesWhatIsThereAndWarnsOfNamesThatHostsCannotCarry) {
    writeFile("taken", "mine");
    const struct {
        const char* arguments;
        int status;
        const char* words;
    } kCases[] = {
        {"taken", 1, "quillon: error: taken: is there already; give another name, or remove it first\n"},
        {"fx --template blurr", 2, "quillon: error: --template blurr: no such template; did you mean blur?\n"},
        {"fx --expose A", 2, "quillon: error: --expose requires --from; see quillon new --help\n"},
        {"none/fx", 1, "none/fx: cannot be made"},
        {"\xE6\x97\xA5\xE6\x9C\xAC", 0, "config.xml: warning: projects cannot find the effect by this name"},
        {"sub/", 0, ""},
        // 31 bytes end inside of the letter.
        {"ABCDEFGHIJKLMNOPQRSTUVWXYZ1234\xC3\xA9", 0, "would show \"ABCDEFGHIJKLMNOPQRSTUVWXYZ1234\"; shorten FXNAME"},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.arguments);
        const ToolRun made = run(std::string("new ") + row.arguments);
        EXPECT_EQ(made.status, row.status);
        EXPECT_NE(made.err.find(row.words), std::string::npos) << made.err;
    }
    EXPECT_EQ(readFile("taken"), "mine");
    EXPECT_FALSE(exists("fx"));
    EXPECT_NE(readFile("sub/config.xml").find("<FXNAME>sub</FXNAME>\n<AGEP_ID>sub</AGEP_ID>\n"), std::string::npos);
}

}  // namespace

}  // namespace quillon::test
