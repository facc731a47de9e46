#include "script/SourcePreparation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace quillon {
namespace {

const std::string kPreRender = "function preRender(w,h) {};";
const std::string kUpdate = "function updateUIFlags() {};";
const std::string kCall = "\nsetup();\n";

// Everything before the program.
std::string PreludeText() {
    const std::string text = PrepareScriptSource("");
    return text.substr(0, text.find(kCall));
}

TEST(SourcePreparation, SpellsOutShorthandsAndSuppliesWhatIsNotNamed) {
    const std::pair<std::string, std::string> kCases[] = {
        // script, text after the prelude
        {"", kCall + kPreRender + kUpdate},
        {"Q.L.initParam('a',1);", "QL_initParam('a',1);" + kCall + kPreRender + kUpdate},
        {"Q.L.Q.L.Q.Q.L.L.", "QL_QL_Q.QL_L." + kCall + kPreRender + kUpdate},
        {"import Q;\nvar a;\nimport Q;", " \nvar a;\nimport Q;" + kCall + kPreRender + kUpdate},
        {"Q.import Q;L.", "Q. L." + kCall + kPreRender + kUpdate},
        {"// no preRender here", "// no preRender here" + kCall + kUpdate},
        {"var mypreRenderer;", "var mypreRenderer;" + kCall + kUpdate},
        {"function updateUIFlags(){} function preRender(){}",
         "function updateUIFlags(){} function preRender(){}" + kCall},
        {"preQ.L.Render;", "preQL_Render;" + kCall + kPreRender + kUpdate},
    };
    for (const auto& [script, expected] : kCases) EXPECT_EQ(PrepareScriptSource(script), PreludeText() + expected);
}

TEST(SourcePreparation, MapsLinesBackToTheProgram) {
    const std::string script = "import Q;\nfunction setup() {\n  throw new Error('here');\n}\n";
    const std::string text = PrepareScriptSource(script);
    const std::size_t place = text.find("throw");
    const std::size_t line = 1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(place), '\n');
    EXPECT_EQ(line - PreludeLineCount(), 3u);
}

}  // namespace
}  // namespace quillon
