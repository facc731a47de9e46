#include "cli/check/shader/SpreadText.h"

#include <set>

namespace quillon::cli {

namespace {

using Tokens = std::vector<SourceToken>;

std::size_t EndOfDirective(const Tokens& tokens, std::size_t begin) {
    std::size_t end = begin + 1;
    while (end < tokens.size() && tokens[end].isDirective && !tokens[end].startsDirective) ++end;
    return end;
}

// Macros that take arguments, and those whose text names one of them.
std::set<std::string> CalledMacros(const Tokens& tokens) {
    std::set<std::string> called;
    for (std::size_t i = 0; i + 2 < tokens.size(); ++i) {
        if (!tokens[i].startsDirective || tokens[i + 1].text != "define" || !tokens[i + 2].isDirective) continue;
        const SourceToken& name = tokens[i + 2];
        const std::size_t end = EndOfDirective(tokens, i);
        const bool takesArguments =
            i + 3 < end && tokens[i + 3].text == "(" && tokens[i + 3].position == name.position + name.text.size();
        bool isCalled = takesArguments;
        for (std::size_t k = i + 3; k < end; ++k) isCalled = isCalled || called.contains(tokens[k].text);
        if (isCalled) called.insert(name.text);
    }
    return called;
}

// Past the bracket that ends a macro's arguments, and past calls that follow as its results' arguments; `begin` where
// there are none.
std::size_t EndOfArguments(const Tokens& tokens, std::size_t begin) {
    std::size_t end = begin;
    int depth = 0;
    for (std::size_t i = begin; i < tokens.size() && !tokens[i].isDirective; ++i) {
        if (tokens[i].text == "(") ++depth;
        if (tokens[i].text == ")") --depth;
        if (depth <= 0 && tokens[i].text != ")") break;
        if (depth == 0) end = i + 1;
        if (depth < 0) break;
    }
    return end;
}

}  // namespace

SpreadText::SpreadText(const ShaderSource& source) : firstLine(static_cast<int>(source.addedLines) + 1) {
    const Tokens& tokens = source.tokens();
    const std::set<std::string> macros = CalledMacros(tokens);
    std::size_t authorStart = 0;
    for (std::size_t i = 0; i < source.addedLines; ++i) authorStart = source.rewritten.find('\n', authorStart) + 1;
    text = source.rewritten.substr(0, authorStart);
    for (std::size_t begin = 0; begin < tokens.size();) {
        std::size_t end = begin + 1;
        if (tokens[begin].startsDirective)
            end = EndOfDirective(tokens, begin);
        else if (macros.contains(tokens[begin].text))
            end = EndOfArguments(tokens, end);
        const bool isLineNumber = tokens[begin].startsDirective && end > begin + 1 && tokens[begin + 1].text == "line";
        for (std::size_t i = begin; i < end && !isLineNumber; ++i) {
            const bool follows = i > begin && tokens[i].position == tokens[i - 1].position + tokens[i - 1].text.size();
            if (i > begin && !follows) text += ' ';
            text += tokens[i].given;
        }
        text += '\n';
        lines.push_back({begin, end});
        begin = end;
    }
    text += source.addedTail;
}

std::vector<std::size_t> SpreadText::tokensAt(int line) const {
    const int index = line - firstLine;
    std::vector<std::size_t> found;
    if (index < 0 || static_cast<std::size_t>(index) >= lines.size()) return found;
    const Line& held = lines[static_cast<std::size_t>(index)];
    for (std::size_t i = held.begin; i < held.end; ++i) found.push_back(i);
    return found;
}

}  // namespace quillon::cli
