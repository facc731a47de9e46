#include <fmt/format.h>

#include <algorithm>

#include "cli/docs/PageText.h"

namespace quillon::cli {

namespace {

constexpr std::size_t kColumns = 74;  // of tables, within man's 80 with its indents

// A text as the formatter prints it: no letter of it is a command or part of one.
std::string Escaped(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '\\')
            escaped += "\\e";
        else if (c == '-')
            escaped += "\\-";
        else if (c == '\'')
            escaped += "\\(aq";
        else if (c == '`')
            escaped += "\\(ga";
        else if (c == '^')
            escaped += "\\(ha";
        else if (c == '~')
            escaped += "\\(ti";
        else
            escaped += c;
    }
    return escaped;
}

// A line that begins with a dot would be a command.
std::string Line(const std::string& text) {
    return (text.starts_with('.') ? "\\&" : "") + text + "\n";
}

std::string Styled(const DocText& text) {
    std::string line;
    for (const DocSpan& span : text) {
        const std::string words = Escaped(span.text);
        line += span.style == DocSpan::Style::plain ? words : "\\fB" + words + "\\fR";
    }
    std::ranges::replace(line, '\n', ' ');
    return Line(line);
}

std::string Verbatim(const std::string& lines) {
    std::string text = ".nf\n";
    for (std::size_t start = 0; start < lines.size();) {
        const std::size_t end = std::min(lines.find('\n', start), lines.size());
        text += Line(Escaped(std::string_view(lines).substr(start, end - start)));
        start = end + 1;
    }
    return text + ".fi\n";
}

std::string ManBlock(const DocBlock& block) {
    switch (block.kind) {
        case DocBlock::Kind::heading:
            return (block.level <= 2 ? ".SH \"" : ".SS \"") + Escaped(PlainText(block.text)) + "\"\n";
        case DocBlock::Kind::code:
            return ".PP\n.RS 4\n" + Verbatim(PlainText(block.text)) + ".RE\n";
        case DocBlock::Kind::table:
            return ".PP\n" + Verbatim(WriteTable(block, {.columns = kColumns}));
        case DocBlock::Kind::paragraph:
            break;
    }
    if (block.depth == 0) return ".PP\n" + Styled(block.text);
    if (block.marker.empty()) return ".IP\n" + Styled(block.text);
    return fmt::format(".IP \"{}\" 4\n", block.marker == "-" ? "\\(bu" : Escaped(block.marker)) + Styled(block.text);
}

}  // namespace

std::string WriteManPage(std::span<const DocBlock> blocks, const std::string& name, int section) {
    std::string upper = name;
    std::ranges::transform(upper, upper.begin(), [](char c) { return c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c; });
    std::string text = fmt::format(".TH \"{}\" \"{}\" \"\" \"Quillon\"\n.SH NAME\n{} \\- {}\n.SH DESCRIPTION\n",
                                   Escaped(upper), section, Escaped(name), Escaped(PlainText(blocks.front().text)));
    for (const DocBlock& block : blocks.subspan(1)) text += ManBlock(block);
    return text;
}

}  // namespace quillon::cli
