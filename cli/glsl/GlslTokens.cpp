#include "cli/glsl/GlslTokens.h"

#include <algorithm>
#include <array>

namespace quillon::cli {

namespace {

using Kind = GlslToken::Kind;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsWordStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool IsBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

std::size_t BlankLength(std::string_view text) {
    return std::ranges::find_if_not(text, IsBlank) - text.begin();
}

// An unfinished comment goes to the end of the text.
std::size_t CommentLength(std::string_view text) {
    if (text.starts_with("//")) return std::min(text.find('\n'), text.size());
    if (!text.starts_with("/*")) return 0;
    const std::size_t end = text.find("*/", 2);
    return end == std::string_view::npos ? text.size() : end + 2;
}

std::size_t WordLength(std::string_view text) {
    if (text.empty() || !IsWordStart(text[0])) return 0;
    return std::ranges::find_if_not(text, [](char c) { return IsWordStart(c) || IsDigit(c); }) - text.begin();
}

// "1", "1.", ".5e-3", "0x1F", "2u", "1.0f": digits, points, letters, and a sign that follows an exponent.
std::size_t NumberLength(std::string_view text) {
    const auto at = [&](std::size_t i) { return i < text.size() ? text[i] : '\0'; };
    if (!IsDigit(at(0)) && !(at(0) == '.' && IsDigit(at(1)))) return 0;
    const bool isHex = at(0) == '0' && (at(1) == 'x' || at(1) == 'X');
    std::size_t end = 1;
    while (true) {
        const bool isExponentSign =
            !isHex && (at(end) == '+' || at(end) == '-') && (at(end - 1) == 'e' || at(end - 1) == 'E');
        if (!IsDigit(at(end)) && !IsWordStart(at(end)) && at(end) != '.' && !isExponentSign) return end;
        ++end;
    }
}

std::size_t MarkLength(std::string_view text) {
    constexpr std::array<std::string_view, 22> kLongMarks = {
        "<<=", ">>=", "&&", "||", "^^", "==", "!=", "<=", ">=", "+=", "-=",
        "*=",  "/=",  "%=", "&=", "|=", "^=", "<<", ">>", "++", "--", "##"};
    for (const std::string_view mark : kLongMarks) {
        if (text.starts_with(mark)) return mark.size();
    }
    return 1;
}

struct Form {
    Kind kind;
    std::size_t (*length)(std::string_view);
};
constexpr Form kForms[] = {{Kind::blank, BlankLength},
                           {Kind::comment, CommentLength},
                           {Kind::word, WordLength},
                           {Kind::number, NumberLength},
                           {Kind::mark, MarkLength}};

}  // namespace

GlslTokens ReadTokens(std::string_view text, int firstLine) {
    GlslTokens tokens;
    int line = firstLine;
    bool isDirective = false;
    bool isLineStart = true;
    while (!text.empty()) {
        Kind kind = Kind::mark;
        std::size_t length = 0;
        for (const Form& form : kForms) {
            kind = form.kind;
            length = form.length(text);
            if (length != 0) break;
        }
        // A line end finishes a directive, so blanks are cut there.
        if (const std::size_t lineEnd = text.substr(0, length).find('\n');
            kind == Kind::blank && lineEnd != std::string_view::npos) {
            length = lineEnd == 0 ? 1 : lineEnd;
        }
        const std::string piece(text.substr(0, length));
        if (piece == "\n") {
            isDirective = false;
            isLineStart = true;
        } else if (kind != Kind::blank && kind != Kind::comment) {
            if (isLineStart && piece == "#") isDirective = true;
            isLineStart = false;
        }
        tokens.push_back({kind, piece, piece, line, isDirective});
        line += static_cast<int>(std::ranges::count(piece, '\n'));
        text.remove_prefix(length);
    }
    return tokens;
}

std::string JoinTokens(const GlslTokens& tokens) {
    std::string text;
    for (const GlslToken& token : tokens) text += token.text;
    return text;
}

std::size_t NextSignificant(const GlslTokens& tokens, std::size_t at) {
    while (at < tokens.size() && !tokens[at].isSignificant()) ++at;
    return at;
}

std::size_t ClosingBracket(const GlslTokens& tokens, std::size_t open) {
    int depth = 0;
    for (std::size_t i = open; i < tokens.size(); ++i) {
        if (tokens[i].kind != Kind::mark) continue;
        const std::string& mark = tokens[i].source;
        if (mark == "(" || mark == "[" || mark == "{") ++depth;
        if (mark == ")" || mark == "]" || mark == "}") --depth;
        if (depth == 0) return i;
    }
    return tokens.size();
}

std::set<std::string> WordsOf(const GlslTokens& tokens) {
    std::set<std::string> words;
    for (const GlslToken& token : tokens) {
        if (token.kind == Kind::word) words.insert(token.source);
    }
    return words;
}

std::string UnusedName(const std::set<std::string>& names, const std::string& wish) {
    std::string name = wish;
    for (int number = 2; names.contains(name); ++number) name = wish + std::to_string(number);
    return name;
}

}  // namespace quillon::cli
