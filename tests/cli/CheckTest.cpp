#include "ToolTest.h"

namespace quillon::test {

namespace {

using Check = ToolTest;

TEST_F(Check, ReportsConfigAndEveryDepth) {
    const struct {
        Files files;
        const char* words;
    } kRows[] = {
        {{{"config.xml", "<FXNAME>n</FXNAME>\n<CATEGORY>a category of far too many letters</CATEGORY>"}, {"fx.js", ""}},
         "fx/config.xml:2: error: CATEGORY: 'a category of far too many letters' has 34 bytes"},
        {{{"fx.js",
           "var s; function setup() {}\nfunction draw() {\n  if (QL_getSurfaceDim(QL_getSequenceRT())[2] === 32) "
           "x;\n}"}},
         "fx/fx.js:3: error: draw: ReferenceError: identifier 'x' undefined [script]\n"},
    };
    for (const auto& [files, words] : kRows) {
        std::filesystem::remove_all(pathOf("fx"));
        addEffect("fx", files);
        const ToolRun result = run("check fx");
        EXPECT_NE(("\n" + result.err).find(std::string("\n") + words), std::string::npos) << result.err;
        EXPECT_EQ(result.status, 1) << words;
        EXPECT_EQ(result.out, "") << words;
    }
}

TEST_F(Check, FindsNothingInWhatIsSoundAndLeavesNoFile) {
    addCopyEffect();
    ASSERT_EQ(run("pack copy -o " + Module("copy")).status, 0);
    for (const std::string& effect : {std::string("copy"), Module("copy")}) {
        const ToolRun result = run("check " + effect);
        EXPECT_EQ(result.out, effect + ": nothing wrong\n") << result.err;
        EXPECT_EQ(result.status, 0);
    }
    EXPECT_EQ(list(), (std::vector<std::string>{"copy", Module("copy")}));
}

}  // namespace

}  // namespace quillon::test
