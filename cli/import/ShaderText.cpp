#include "cli/import/ShaderText.h"

#include <algorithm>

namespace quillon::cli {

void ShaderText::add(const std::string& ownLines) {
    whole += ownLines;
    lines.insert(lines.end(), static_cast<std::size_t>(std::ranges::count(ownLines, '\n')), 0);
}

void ShaderText::add(const GlslTokens& tokens, bool isCommon) {
    if (tokens.empty()) return;
    std::string text = JoinTokens(tokens);
    if (text.empty() || text.back() != '\n') text += '\n';
    whole += text;
    int line = tokens.front().line;
    for (const char c : text) {
        if (c != '\n') continue;
        lines.push_back(isCommon ? -line : line);
        ++line;
    }
}

}  // namespace quillon::cli
