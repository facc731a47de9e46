#include <fmt/format.h>

#include "cli/check/shader/ShaderChecks.h"

namespace quillon::cli {

namespace {

constexpr std::string_view kOpening = "([{";
constexpr std::string_view kClosing = ")]}";
constexpr std::size_t kOrderMarkBytes = 3;

// The first bracket that has no partner. What ends a statement or begins a block ends a round bracket's chance, other
// than in the head of a loop.
void CheckBrackets(const ShaderSource& source, ShaderFindings& findings) {
    const auto& code = source.code();
    std::vector<std::size_t> open;
    const auto reportOpen = [&] {
        findings.add("shader/unmatched-bracket", code[open.back()],
                     fmt::format("this \"{}\" is never closed", code[open.back()].text));
    };
    for (std::size_t i = 0; i < code.size(); ++i) {
        const std::string& mark = code[i].text;
        if (mark.size() != 1) continue;
        const bool isInRound = !open.empty() && code[open.back()].text != "{";
        const bool isInLoopHead = isInRound && open.back() > 0 && code[open.back() - 1].text == "for";
        if (isInRound && (mark == "{" || (mark == ";" && !isInLoopHead))) return reportOpen();
        if (kOpening.find(mark) != std::string_view::npos) open.push_back(i);
        const std::size_t kind = kClosing.find(mark);
        if (kind == std::string_view::npos) continue;
        if (open.empty()) {
            findings.add("shader/unmatched-bracket", code[i], fmt::format("this \"{}\" closes nothing", mark));
            return;
        }
        if (code[open.back()].text[0] != kOpening[kind]) return reportOpen();
        open.pop_back();
    }
    if (!open.empty()) reportOpen();
}

// One finding for each run of them, such as a word in another script.
void CheckCharacters(const ShaderSource& source, ShaderFindings& findings) {
    if (source.hasOrderMark)
        findings.addAt("shader/character", 0, "the file begins with a byte order mark, which graphics drivers refuse",
                       "save it as UTF-8 without one");
    std::size_t runEnd = std::string::npos;
    for (const SourceToken& token : source.code()) {
        const bool isAscii = static_cast<unsigned char>(token.text[0]) < 0x80;
        const bool isForeign = !isAscii || HoldsName("\" ' ` $ @ \\", token.text);
        if (!isForeign || (source.hasOrderMark && token.position < kOrderMarkBytes)) continue;
        if (token.position != runEnd)
            findings.add("shader/character", token,
                         isAscii ? fmt::format("{} is no character of GLSL", token.text)
                                 : "GLSL has only ASCII characters outside of comments");
        runEnd = token.position + 1;
    }
}

}  // namespace

void CheckForm(const ShaderSource& source, ShaderFindings& findings) {
    CheckCharacters(source, findings);
    if (source.openComment != std::string::npos)
        findings.addAt("shader/unclosed-comment", source.openComment, "this comment never ends");
    else if (source.isCertain())
        CheckBrackets(source, findings);
}

}  // namespace quillon::cli
