#include <fmt/format.h>

#include <algorithm>
#include <span>

#include "cli/check/shader/ShaderChecks.h"

namespace quillon::cli {

namespace {

// The reads that the engine looks for. It finds none of the others.
constexpr std::string_view kFound = "texture2D texture2DLod textureCube";
constexpr std::string_view kNeverFound = "texture2DProj texture2DProjLod texture2DRect texture2DRectProj";

// Whether the author turns the channels of the call's result, as the engine does it.
bool IsPutInOrder(const ShaderSource& source, std::size_t open) {
    const std::size_t close = source.closing(open);
    return source.codeText(close + 1) == "." && HoldsName("SWIZZLE gbar", source.codeText(close + 2));
}

std::size_t CountArguments(const ShaderSource& source, std::size_t open) {
    const std::size_t close = source.closing(open);
    std::size_t count = close > open + 1 ? 1 : 0;
    for (std::size_t i = open + 1; i < close; ++i) {
        const std::string& mark = source.codeText(i);
        if (mark == "(" || mark == "[") i = std::min(source.closing(i), close);
        if (mark == ",") ++count;
    }
    return count;
}

std::string RemedyFor(const ShaderSource& source, const SourceToken& read, bool isCall) {
    if (!isCall) return fmt::format("write \"{}(\" at each read", read.text);
    const std::size_t next = read.position + read.text.size();
    const std::size_t bracket = source.text.find_first_not_of(" \t\r\n\v\f", next);
    if (bracket != std::string::npos && source.text[bracket] != '(')
        return fmt::format("write \"{}(\" without a comment or a backslash in it", read.text);
    return fmt::format("write a blank before {}", read.text);
}

void CheckRead(const ShaderSource& source, const SourceToken& read, bool isCall, ShaderFindings& findings) {
    if (HoldsName(kNeverFound, read.text)) {
        findings.add("shader/unreached-read", read,
                     fmt::format("the channels of {} come out in the host's order: A, R, G, B", read.text),
                     "use texture2D and divide the place yourself");
    } else if (HoldsName(kFound, read.text) && !read.isRenamed()) {
        findings.add("shader/unreached-read", read,
                     "Quillon does not find this read, so its channels come out in the host's order: A, R, G, B",
                     RemedyFor(source, read, isCall));
    }
}

// A line that holds the word SWIZZLE is taken to know what it does.
void CheckMacros(const ShaderSource& source, const OwnNames& names, ShaderFindings& findings) {
    const auto& tokens = source.tokens();
    for (std::size_t begin = 0; begin < tokens.size();) {
        std::size_t end = begin + 1;
        while (end < tokens.size() && !tokens[end].startsDirective) ++end;
        const std::span line(tokens.data() + begin, end - begin);
        const auto isOrder = [](const SourceToken& token) { return token.isDirective && token.text == "SWIZZLE"; };
        const bool isPutInOrder = std::ranges::any_of(line, isOrder);
        for (std::size_t i = 0; i < line.size() && line[i].isDirective && !isPutInOrder; ++i) {
            const bool isKept = line[i].presence == SourceToken::Presence::kept;
            const bool isCall = i + 1 < line.size() && line[i + 1].isDirective && line[i + 1].text == "(";
            if (isKept && line[i].isWord() && !names.holdsCallable(line[i].text))
                CheckRead(source, line[i], isCall, findings);
        }
        begin = end;
    }
}

}  // namespace

void CheckReads(const ShaderSource& source, ShaderFindings& findings) {
    const OwnNames names(source);
    const auto& code = source.code();
    for (std::size_t i = 0; i < code.size(); ++i) {
        const SourceToken& token = code[i];
        if (!token.isWord() || names.holdsCallable(token.text) || source.codeText(i + 1) != "(") continue;
        const bool isPutInOrder = IsPutInOrder(source, i + 1);
        if (!isPutInOrder) CheckRead(source, token, /*isCall=*/true, findings);
        if (!token.isRenamed() || !HoldsName(kFound, token.text)) continue;
        if (token.text == "texture2DLod")
            findings.add("shader/lod-read", token, "some drivers have no texture2DLod in fragment shaders");
        if (isPutInOrder)
            findings.add("shader/swizzled-twice", token,
                         fmt::format("Quillon puts this read's channels in order, and {} turns them once more",
                                     source.codeText(source.closing(i + 1) + 2)));
        if (token.text == "texture2D" && CountArguments(source, i + 1) > 2)
            findings.add("shader/read-arguments", token, "texture2D takes a picture and a place here, and no bias");
    }
    CheckMacros(source, names, findings);
}

}  // namespace quillon::cli
