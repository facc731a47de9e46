#include "cli/docs/PageText.h"

#include <algorithm>

namespace quillon::cli {

namespace {

constexpr std::size_t kCodeIndent = 4;
constexpr std::size_t kListIndent = 2;

std::string Styled(const DocText& text, bool hasStyles) {
    std::string line;
    for (const DocSpan& span : text) {
        const char* const start = span.style == DocSpan::Style::code ? "\x1b[36m" : "\x1b[1m";
        const bool isStyled = hasStyles && span.style != DocSpan::Style::plain;
        line += isStyled ? start + span.text + "\x1b[0m" : span.text;
    }
    return line;
}

std::string Heading(const DocBlock& block, const PageLook& look) {
    const std::string text = PlainText(block.text);
    if (look.hasStyles) return "\x1b[1m" + text + "\x1b[0m\n";
    if (block.level > 2) return text + "\n";
    return text + "\n" + std::string(WidthOfText(text), block.level == 1 ? '=' : '-') + "\n";
}

std::string Code(const DocBlock& block) {
    std::string lines, rest = PlainText(block.text);
    for (std::size_t end; !rest.empty(); rest.erase(0, end + 1)) {
        end = std::min(rest.find('\n'), rest.size() - 1);
        lines += (rest[0] == '\n' ? "" : std::string(kCodeIndent, ' ')) + rest.substr(0, end + 1);
    }
    return lines;
}

std::string Paragraph(const DocBlock& block, const PageLook& look) {
    const std::string hanging((block.depth ? block.depth - 1 : 0) * kListIndent, ' ');
    const std::size_t indent = block.depth ? hanging.size() + std::max(block.marker.size() + 1, kListIndent) : 0;
    std::string lines;
    for (const DocText& line : WrapText(block.text, look.columns - std::min(indent, look.columns / 2))) {
        std::string start(indent, ' ');
        if (lines.empty() && !block.marker.empty()) start = hanging + block.marker + " ";
        lines += start + Styled(line, look.hasStyles) + "\n";
    }
    return lines;
}

}  // namespace

std::size_t WidthOfText(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count_if(text, [](char c) { return (c & 0xC0) != 0x80; }));
}

std::vector<DocText> WrapText(const DocText& text, std::size_t columns) {
    std::vector<DocText> lines(1);
    DocText word;
    std::size_t lineWidth = 0, wordWidth = 0;
    const auto add = [](DocText& to, const std::string& piece, DocSpan::Style style) {
        if (to.empty() || to.back().style != style) to.push_back({"", style});
        to.back().text += piece;
    };
    const auto endWord = [&] {
        if (word.empty()) return;
        if (lineWidth && lineWidth + 1 + wordWidth > columns) {
            lines.emplace_back();
            lineWidth = 0;
        }
        if (lineWidth) {
            const bool isWithin = lines.back().back().style == word.front().style;
            add(lines.back(), " ", isWithin ? word.front().style : DocSpan::Style::plain);
            ++lineWidth;
        }
        for (const DocSpan& piece : word) add(lines.back(), piece.text, piece.style);
        lineWidth += wordWidth;
        word.clear();
        wordWidth = 0;
    };
    for (const DocSpan& span : text) {
        std::size_t start = 0;
        while (start <= span.text.size()) {
            const std::size_t end = std::min(span.text.find_first_of(" \n", start), span.text.size());
            if (const std::string piece = span.text.substr(start, end - start); !piece.empty()) {
                add(word, piece, span.style);
                wordWidth += WidthOfText(piece);
            }
            if (end < span.text.size()) endWord();
            start = end + 1;
        }
    }
    endWord();
    return lines;
}

std::string WritePageText(std::span<const DocBlock> blocks, const PageLook& look) {
    std::string text;
    const DocBlock* before = nullptr;
    for (const DocBlock& block : blocks) {
        // Items of a list follow each other closely.
        if (before && (block.marker.empty() || before->depth == 0)) text += '\n';
        switch (block.kind) {
            case DocBlock::Kind::heading:
                text += Heading(block, look);
                break;
            case DocBlock::Kind::code:
                text += Code(block);
                break;
            case DocBlock::Kind::table:
                text += WriteTable(block, look);
                break;
            case DocBlock::Kind::paragraph:
                text += Paragraph(block, look);
                break;
        }
        before = &block;
    }
    return text;
}

}  // namespace quillon::cli
