#include "ToolTest.h"

namespace quillon::test {

namespace {

using CommandLine = ToolTest;

// What the words are taken for, and the nearest ones where there are some.
TEST_F(CommandLine, NamesTheNearestOfWhatExists) {
    addCopyEffect();
    const struct {
        const char* arguments;
        const char* words;
    } kCases[] = {
        {"chekc copy", "chekc: no such command; did you mean check? see quillon --help"},
        {"Render", "Render: no such command; did you mean render? see quillon --help"},
        {"work", "work: no such command; see quillon --help"},  // "worker" is not for people
        {"--versoin", "--versoin: no such option; did you mean --version? see quillon --help"},
        {"pack copy --ouput x.so", "--ouput: no such option; did you mean --output? see quillon pack --help"},
        {"render copy --outptu=x.png", "--outptu: no such option; did you mean --output? see quillon render --help"},
        {"chart -q", "-q: no such option; see quillon chart --help"},
        {"render copy -i \"\" -o out.png", "-i,--input: its path is empty; see quillon render --help"},
        {"info", "EFFECT is required; see quillon info --help"},
        {"info copy copy", "The following argument was not expected: copy; see quillon info --help"},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.arguments);
        const ToolRun result = run(row.arguments);
        EXPECT_EQ(result.err, std::string("quillon: error: ") + row.words + "\n");
        EXPECT_EQ(result.status, 2);
    }
}

}  // namespace

}  // namespace quillon::test
