#include "cli/check/script/ScriptLexer.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace quillon::cli {

namespace {

using Kind = ScriptToken::Kind;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsHexDigit(char c) {
    return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// Bytes of the blank at the start of the text that is no line end; 0 without one.
std::size_t BlankLength(std::string_view text) {
    constexpr std::string_view kBlanks[] = {"\xC2\xA0",     "\xEF\xBB\xBF", "\xE1\x9A\x80", "\xE1\xA0\x8E",
                                            "\xE2\x80\xAF", "\xE2\x81\x9F", "\xE3\x80\x80"};
    const char c = text.empty() ? 'x' : text[0];
    if (c == ' ' || c == '\t' || c == '\v' || c == '\f') return 1;
    if (static_cast<unsigned char>(c) < 0x80) return 0;
    for (const std::string_view blank : kBlanks)
        if (text.starts_with(blank)) return blank.size();
    // The spaces of fixed widths.
    return text.size() > 2 && text.starts_with("\xE2\x80") && static_cast<unsigned char>(text[2]) <= 0x8A ? 3 : 0;
}

// The same of a line end.
std::size_t LineEndLength(std::string_view text) {
    if (text.starts_with("\r\n")) return 2;
    if (!text.empty() && (text[0] == '\n' || text[0] == '\r')) return 1;
    return text.starts_with("\xE2\x80\xA8") || text.starts_with("\xE2\x80\xA9") ? 3 : 0;
}

// Bytes of what a name may be made of, at the start of the text: all letters beyond ASCII pass.
std::size_t NameCharacterLength(std::string_view text) {
    const char c = text.empty() ? ' ' : text[0];
    if (IsDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '$') return 1;
    if (static_cast<unsigned char>(c) < 0x80) return 0;
    return BlankLength(text) == 0 && LineEndLength(text) == 0 ? 1 : 0;
}

// Bytes of "\u0041" or "\u{41}" at the start of the text; 0 without one.
std::size_t UnicodeEscapeLength(std::string_view text) {
    if (!text.starts_with("\\u")) return 0;
    const bool isBraced = text.size() > 2 && text[2] == '{';
    const std::string_view digits = text.substr(isBraced ? 3 : 2, isBraced ? 8 : 4);
    const std::size_t count = std::ranges::find_if_not(digits, IsHexDigit) - digits.begin();
    if (!isBraced) return count == 4 ? 6 : 0;
    return count > 0 && count < digits.size() && digits[count] == '}' ? 3 + count + 1 : 0;
}

void AppendCharacter(std::string& name, std::uint32_t code) {
    const auto byte = [&](std::uint32_t value) { name += static_cast<char>(value); };
    const auto tail = [&](int shift) { byte(0x80 | (code >> shift & 0x3F)); };
    if (code < 0x80) return byte(code);
    if (code < 0x800) return byte(0xC0 | code >> 6), tail(0);
    if (code < 0x10000) return byte(0xE0 | code >> 12), tail(6), tail(0);
    byte(0xF0 | (code >> 18 & 7)), tail(12), tail(6), tail(0);
}

// Longer marks before those that they begin with.
constexpr std::string_view kMarks[] = {
    ">>>=", "...", "===", "!==", ">>>", "<<=", ">>=", "**=", "&&=", "||=", "?\?=", "=>", "==", "!=", "<=",
    ">=",   "&&",  "||",  "??",  "?.",  "++",  "--",  "+=",  "-=",  "*=",  "/=",   "%=", "&=", "|=", "^=",
    "<<",   ">>",  "**",  "{",   "}",   "(",   ")",   "[",   "]",   ".",   ";",    ",",  "<",  ">",  "+",
    "-",    "*",   "/",   "%",   "&",   "|",   "^",   "!",   "~",   "?",   ":",    "=",  "`",  "#"};

std::size_t MarkLength(std::string_view text) {
    for (const std::string_view mark : kMarks) {
        // "a?.5:1" holds a number.
        if (mark == "?." && text.size() > 2 && IsDigit(text[2])) continue;
        if (text.starts_with(mark)) return mark.size();
    }
    return 0;
}

}  // namespace

// Takes blanks and comments; whether a line ended among them.
bool ScriptLexer::skipBlanks() {
    bool hasLineEnd = std::exchange(followsLineEnd, false);
    while (position < text.size()) {
        const std::string_view rest = text.substr(position);
        if (const std::size_t blank = BlankLength(rest)) {
            position += blank;
        } else if (const std::size_t lineEnd = LineEndLength(rest)) {
            position += lineEnd;
            hasLineEnd = true;
        } else if (rest.starts_with("/*")) {
            const std::size_t end = std::min(text.find("*/", position + 2), text.size());
            for (; position < end; ++position) hasLineEnd = hasLineEnd || LineEndLength(text.substr(position)) != 0;
            position = std::min(position + 2, text.size());
        } else if (rest.starts_with("//") || rest.starts_with("<!--") || (hasLineEnd && rest.starts_with("-->"))) {
            while (position < text.size() && LineEndLength(text.substr(position)) == 0) ++position;
        } else {
            break;
        }
    }
    return hasLineEnd;
}

ScriptToken ScriptLexer::token(Kind kind, std::size_t end) {
    ScriptToken made{.kind = kind, .source = text.substr(position, end - position), .begin = position};
    position = made.end();
    return made;
}

ScriptToken ScriptLexer::next() {
    const bool isAfterLineEnd = skipBlanks();
    ScriptToken found;
    const std::string_view rest = text.substr(position);
    if (rest.empty()) {
        found = token(Kind::end, position);
    } else if (IsDigit(rest[0]) || (rest[0] == '.' && IsDigit(at(position + 1)))) {
        found = number();
    } else if (rest[0] == '"' || rest[0] == '\'') {
        found = quoted();
    } else if (NameCharacterLength(rest) != 0 || UnicodeEscapeLength(rest) != 0) {
        found = word();
    } else if (const std::size_t mark = MarkLength(rest)) {
        found = token(Kind::mark, position + mark);
    } else {
        found = token(Kind::broken, position + 1);
    }
    found.followsLineEnd = isAfterLineEnd;
    return found;
}

ScriptToken ScriptLexer::word() {
    std::size_t end = position;
    std::string name;
    bool hasEscapes = false;
    while (end < text.size()) {
        if (const std::size_t escape = UnicodeEscapeLength(text.substr(end))) {
            if (!std::exchange(hasEscapes, true)) name = text.substr(position, end - position);
            std::uint32_t code = 0;
            for (const char c : text.substr(end + 2, escape - 2))
                if (IsHexDigit(c))
                    code = code << 4 | static_cast<std::uint32_t>(IsDigit(c) ? c - '0' : (c | 32) - 'a' + 10);
            AppendCharacter(name, code);
            end += escape;
        } else if (NameCharacterLength(text.substr(end)) != 0) {
            if (hasEscapes) name += text[end];
            ++end;
        } else {
            break;
        }
    }
    ScriptToken found = token(Kind::word, end);
    found.name = hasEscapes ? std::string_view(decoded->emplace_back(std::move(name))) : found.source;
    return found;
}

ScriptToken ScriptLexer::number() {
    const bool isPrefixed =
        at(position) == '0' && std::string_view("xXbBoO").find(at(position + 1)) != std::string_view::npos;
    std::size_t end = isPrefixed ? position + 2 : position;
    const auto takeDigits = [&] {
        for (; IsDigit(at(end)) || at(end) == '_' || (isPrefixed && IsHexDigit(at(end))); ++end)
            if (at(end) == '_') note(NewerForm::What::digitSeparator, end);
    };
    takeDigits();
    if (!isPrefixed) {
        if (at(end) == '.') {
            ++end;
            takeDigits();
        }
        if (at(end) == 'e' || at(end) == 'E') {
            ++end;
            if (at(end) == '+' || at(end) == '-') ++end;
            takeDigits();
        }
    }
    if (at(end) == 'n') note(NewerForm::What::bigInteger, end++);
    const bool isBroken = NameCharacterLength(text.substr(end)) != 0;
    return token(isBroken ? Kind::broken : Kind::number, end);
}

ScriptToken ScriptLexer::quoted() {
    std::size_t end = position + 1;
    while (end < text.size() && text[end] != text[position]) {
        if (text[end] == '\n' || text[end] == '\r') return token(Kind::broken, end);
        if (text[end] == '\\') end += text.substr(end + 1).starts_with("\r\n") ? 2 : 1;
        ++end;
    }
    return end < text.size() ? token(Kind::text, end + 1) : token(Kind::broken, text.size());
}

ScriptToken ScriptLexer::regularExpressionAt(const ScriptToken& slash) {
    position = slash.begin;
    std::size_t end = position + 1;
    bool isInClass = false;
    for (; at(end) != '/' || isInClass; ++end) {
        if (end >= text.size() || LineEndLength(text.substr(end)) != 0) return token(Kind::broken, end);
        if (text[end] == '[') isInClass = true;
        if (text[end] == ']') isInClass = false;
        if (text.substr(end).starts_with("(?<") && !isInClass) note(NewerForm::What::regexpGroup, end);
        if (text[end] == '\\' && LineEndLength(text.substr(end + 1)) == 0) ++end;
    }
    for (++end; NameCharacterLength(text.substr(std::min(end, text.size()))) != 0; ++end)
        if (std::string_view("gim").find(at(end)) == std::string_view::npos) note(NewerForm::What::regexpFlag, end);
    ScriptToken found = token(Kind::text, end);
    found.followsLineEnd = slash.followsLineEnd;
    return found;
}

ScriptToken ScriptLexer::templateTextAt(std::size_t begin) {
    position = begin;
    for (std::size_t end = begin; end < text.size(); ++end) {
        if (text[end] == '`') return token(Kind::templateText, end + 1);
        if (text.substr(end).starts_with("${")) return token(Kind::templateText, end + 2);
        if (text[end] == '\\') ++end;
    }
    return token(Kind::broken, text.size());
}

std::vector<NewerForm> ScriptLexer::takeForms() {
    return std::exchange(forms, {});
}

}  // namespace quillon::cli
