// A script as `check` reads it without running it.
//
// Planted once: no look at the end of the text after a comment that nothing closes.

#include <algorithm>
#include <string>

#include "Input.h"
#include "cli/check/script/CheckScript.h"
#include "cli/effect/EffectSource.h"

using namespace quillon;
using namespace quillon::cli;

namespace {

// All that is said of a text, without the columns, and as if the text began `linesBefore` lines above.
std::string Words(std::string_view text, int linesBefore) {
    const int lines = CountLines(text) + 1;
    std::string words;
    const auto say = [&](int line, const std::string& what) {
        fuzz::Require(line >= 0 && line <= lines, "what is said of a script is in the file");
        words += std::to_string(line == 0 ? 0 : line - linesBefore) + " " + what + "\n";
    };
    for (const Diagnostic& finding : CheckScriptText("fx.js", text)) say(finding.line, finding.rule);
    for (const ScriptFunction& function : FunctionsOfScript(text)) {
        fuzz::Require(function.firstLine <= function.lastLine, "a function does not end before it begins");
        say(function.firstLine, function.name);
        say(function.lastLine, "end");
    }
    if (const auto place = WhereScriptBreaks(text)) say(place->line, place->token);
    return words;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = fuzz::TextOf(data, size);
    const std::string words = Words(text, 0);
    // Not where the file's mark would no longer be at its start.
    if (!text.starts_with('\xEF'))
        fuzz::Require(Words("\n" + std::string(text), 1) == words, "lines are counted alike");
    return 0;
}
