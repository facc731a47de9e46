// A fragment shader: rewritten for the driver, cut into tokens, and checked without a driver.
//
// Planted once: one byte of the text lost at each renaming.

#include <algorithm>
#include <string>

#include "Input.h"
#include "cli/check/shader/CheckShaderText.h"
#include "cli/check/shader/ExplainShader.h"
#include "cli/check/shader/SpreadText.h"
#include "cli/glsl/GlslTokens.h"
#include "gpu/FragmentRewriting.h"

using namespace quillon;
using namespace quillon::cli;

namespace {

bool Holds(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

// Without what the passes put in, the text is the author's.
void UndoRewriting(std::string_view source) {
    RewrittenFragment rewritten = RewriteFragment(source);
    if (Holds(source, "repl_") || Holds(source, "samplerCube")) return;
    std::string& text = rewritten.text;
    for (std::size_t line = 0; line < rewritten.addedLines; ++line) text.erase(0, text.find('\n') + 1);
    if (Holds(text, "repl_main")) text.erase(text.rfind('\n'));
    for (std::size_t at = 0; (at = text.find("repl_", at)) != std::string::npos;) text.erase(at, 5);
    fuzz::Require(text == source, "the author's text stays whole");
}

void Check(const std::string& text, std::string_view log) {
    const ShaderSource source(text);
    const SpreadText spread(source);
    for (int line = 0; line <= source.lineCount() + 3; ++line) {
        for (const std::size_t token : spread.tokensAt(line))
            fuzz::Require(token < source.tokens().size(), "a line of the driver is a token of the author's");
    }
    const DriverVerdict verdict{DriverVerdict::Outcome::notCompiled, std::string(log), std::string(log), ""};
    for (const Diagnostics& findings : {CheckShaderText("a.frag", source), ExplainShader("a.frag", source, verdict)}) {
        for (const Diagnostic& finding : findings)
            fuzz::Require(finding.line >= 0 && finding.line <= source.lineCount(), "a finding is in the file");
    }
}

}  // namespace

// After a zero byte, where the engine's text ends, comes what a driver says.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view whole = fuzz::TextOf(data, size);
    const std::string text(whole.substr(0, whole.find('\0')));
    UndoRewriting(text);
    fuzz::Require(JoinTokens(ReadTokens(whole, 1)) == whole, "tokens are the text");
    Check(text, whole.substr(std::min(text.size() + 1, whole.size())));
    return 0;
}
