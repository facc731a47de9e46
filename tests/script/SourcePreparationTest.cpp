#include "script/SourcePreparation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace quillon {
namespace {

const std::string kPreRender = "function preRender(w,h) {};";
const std::string kUpdate = "function updateUIFlags() {};";
const std::string kCall = "\nsetup();\n";

// All that stands in front of the program.
std::string PreludeText() {
    const std::string text = PrepareScriptSource("");
    return text.substr(0, text.find(kCall));
}

struct SourceCase {
    const char* name;
    std::string script;
    std::string expected;  // behind the prelude
};

class SourcePreparation : public ::testing::TestWithParam<SourceCase> {};

TEST_P(SourcePreparation, GivesTheText) {
    const std::string text = PrepareScriptSource(GetParam().script);
    EXPECT_EQ(text, PreludeText() + GetParam().expected);
}

const SourceCase kCases[] = {
    {"empty", "", kCall + kPreRender + kUpdate},
    {"shorthand", "Q.L.initParam('a',1);", "QL_initParam('a',1);" + kCall + kPreRender + kUpdate},
    {"shorthand_twice_in_a_row", "Q.L.Q.L.Q.Q.L.L.", "QL_QL_Q.QL_L." + kCall + kPreRender + kUpdate},
    {"import_once", "import Q;\nvar a;\nimport Q;", " \nvar a;\nimport Q;" + kCall + kPreRender + kUpdate},
    {"import_makes_no_shorthand", "Q.import Q;L.", "Q. L." + kCall + kPreRender + kUpdate},
    {"word_in_comment_counts", "// no preRender here", "// no preRender here" + kCall + kUpdate},
    {"word_in_longer_word_counts", "var mypreRenderer;", "var mypreRenderer;" + kCall + kUpdate},
    {"both_defined", "function updateUIFlags(){} function preRender(){}",
     "function updateUIFlags(){} function preRender(){}" + kCall},
    {"word_made_by_the_shorthand", "preQ.L.Render;", "preQL_Render;" + kCall + kPreRender + kUpdate},
};

INSTANTIATE_TEST_SUITE_P(Programs, SourcePreparation, ::testing::ValuesIn(kCases),
                         [](const auto& row) { return row.param.name; });

TEST(PreparedSource, MapsLinesBackToTheProgram) {
    const std::string script = "import Q;\nfunction setup() {\n  throw new Error('here');\n}\n";
    const std::string text = PrepareScriptSource(script);
    const std::size_t place = text.find("throw");
    const std::size_t line = 1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(place), '\n');
    EXPECT_EQ(line - PreludeLineCount(), 3u);
}

}  // namespace
}  // namespace quillon
