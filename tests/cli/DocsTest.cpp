// The documentation in the terminal.

#include <fstream>
#include <regex>
#include <sstream>

#include "ToolTest.h"
#include "cli/docs/DocBlocks.h"
#include "cli/docs/PageText.h"

namespace quillon::test {

namespace {

using Docs = ToolTest;

TEST_F(Docs, FindsPagesFunctionsCommandsAndHeadings) {
    const struct {
        const char* topic;
        const char* firstLine;
    } kCases[] = {
        {"script-api", "Script API"},
        {"Script-API", "Script API"},
        {"QL_renderShader", "QL_renderShader(shader, target, flip, viewport)"},
        {"q.l.getparamflags", "QL_setParamFlags(param, flags), QL_getParamFlags(param)"},
        {"\"QL_getTime()\"", "QL_getTime()"},
        {"QL_GL.REPEAT", "QL_setTextureParam(id, name, value)"},
        {"draw", "Entry points"},
        {"chart", "quillon chart -o OUTPUT"},
        {"batch files on windows", "Batch files on Windows"},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.topic);
        const ToolRun shown = run(std::string("docs ") + row.topic);
        EXPECT_EQ(shown.status, 0) << shown.err;
        EXPECT_EQ(shown.out.substr(0, std::string(row.firstLine).size()), row.firstLine);
    }
    const ToolRun unknown = run("docs QL_rendrShader");
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.err,
              "quillon: error: QL_rendrShader: no such topic; did you mean QL_renderShader? quillon docs lists them\n");
    EXPECT_NE(run("docs").out.find("\nrecipes           Recipes\n"), std::string::npos);
}

// Each function that editors know has an entry with the same arguments. (The engine's own functions are held against
// the declarations by the tests of the script host.)
TEST_F(Docs, HasAnEntryForEachFunctionThatEditorsKnow) {
    std::ostringstream text;
    text << std::ifstream(SourceFolder() / "share/quillon.d.ts").rdbuf();
    const std::string declarations = text.str();
    const std::regex declaration(R"(declare function (QL_\w+)\(([^)]*)\))"), name(R"((\w+)\??:)");
    int count = 0;
    for (std::sregex_iterator match(declarations.begin(), declarations.end(), declaration), none; match != none;
         ++match) {
        const std::string parameters = (*match)[2];
        std::string head = (*match)[1].str() + "(";
        for (std::sregex_iterator parameter(parameters.begin(), parameters.end(), name); parameter != none; ++parameter)
            head += (head.ends_with("(") ? "" : ", ") + (*parameter)[1].str();
        const std::string shown = run("docs " + (*match)[1].str()).out;
        EXPECT_NE(shown.substr(0, shown.find('\n')).find(head + ")"), std::string::npos) << head << "\n" << shown;
        ++count;
    }
    EXPECT_GE(count, 30);
}

// In a pipe every page is plain text that fits 80 columns, except code and words that are longer.
TEST_F(Docs, FitsEveryPage) {
    std::istringstream topics(run("docs").out);
    int count = 0;
    for (std::string line; std::getline(topics, line) && !line.empty(); ++count) {
        const std::string topic = line.substr(0, line.find(' '));
        std::istringstream page(run("docs " + topic).out);
        for (std::string text; std::getline(page, text);) {
            EXPECT_EQ(text.find('\x1b'), std::string::npos) << topic;
            const bool isCode = text.starts_with("    ");
            EXPECT_TRUE(isCode || cli::WidthOfText(text) <= 80 || text.find(' ') == std::string::npos)
                << topic << ": " << text;
        }
        const std::string manual = run("docs --man " + topic).out;
        EXPECT_TRUE(manual.starts_with(".TH \"QUILLON")) << topic;
    }
    EXPECT_GE(count, 15);
}

constexpr const char* kPage =
    "# A page\n\n<!-- not for readers -->\nWords in a paragraph with `code` and **strong**\nones, a "
    "[link](other.md#x), "
    "1 &lt; 2.\n\n- first, which is a longer item\n- second\n\n  more of it\n\n1. one\n\n| a | b |\n|---|---|\n| x | "
    "long "
    "words in a cell |\n\n    \\.code\n";

TEST(DocPages, AreWrittenForWidthsStylesAndMan) {
    const auto blocks = cli::ReadMarkdown(kPage);
    EXPECT_EQ(cli::WritePageText(blocks, {.columns = 24}),
              "A page\n======\n\nWords in a paragraph\nwith code and strong\nones, a link (other), 1\n< 2.\n\n"
              "- first, which is a\n  longer item\n- second\n\n  more of it\n1. one\n\n"
              "a  b\n-  --------------------\nx  long words in a cell\n\n    \\.code\n");
    const std::string styled = cli::WritePageText(blocks, {.columns = 24, .hasStyles = true});
    EXPECT_NE(styled.find("\x1b[1mA page\x1b[0m\n\nWords in a paragraph\nwith \x1b[36mcode\x1b[0m and "),
              std::string::npos);
    const std::string manual = cli::WriteManPage(blocks, "quillon-page", 7);
    EXPECT_NE(manual.find(".SH NAME\nquillon\\-page \\- A page\n"), std::string::npos) << manual;
    EXPECT_NE(manual.find(".IP \"\\(bu\" 4\nsecond\n"), std::string::npos) << manual;
    EXPECT_NE(manual.find("\n\\e.code\n"), std::string::npos) << manual;
}

}  // namespace

}  // namespace quillon::test
