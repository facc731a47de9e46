#include "cli/import/SourceText.h"

#include <fmt/format.h>

#include <algorithm>

namespace quillon::cli {

namespace {

// Bytes of the UTF-8 sequence at the start of the text; 0 when there is none. Overlong forms count as UTF-8.
std::size_t SequenceLength(std::string_view text) {
    const auto first = static_cast<unsigned char>(text[0]);
    const std::size_t length = first < 0x80 ? 1 : first >= 0xC2 && first < 0xE0 ? 2 : (first & 0xF0) == 0xE0 ? 3 : 4;
    if ((first >= 0x80 && first < 0xC2) || first > 0xF4 || text.size() < length) return 0;
    const auto continues = [](char c) { return (c & 0xC0) == 0x80; };
    return std::ranges::all_of(text.substr(1, length - 1), continues) ? length : 0;
}

bool IsUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = SequenceLength(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

std::string FromLatin1(std::string_view bytes) {
    std::string text;
    for (const char c : bytes) {
        const auto code = static_cast<unsigned char>(c);
        if (code < 0x80) {
            text += c;
        } else {
            text += static_cast<char>(0xC0 | code >> 6);
            text += static_cast<char>(0x80 | (code & 0x3F));
        }
    }
    return text;
}

}  // namespace

std::string NormalizeSource(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    const std::string read = IsUtf8(bytes) ? std::string(bytes) : FromLatin1(bytes);
    std::string lines;
    for (std::size_t i = 0; i < read.size(); ++i) {
        if (read[i] == '\r') {
            lines += '\n';
            if (i + 1 < read.size() && read[i + 1] == '\n') ++i;
        } else {
            lines += read[i] == '\0' ? ' ' : read[i];
        }
    }
    std::string text;
    std::size_t owed = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i] == '\\' && i + 1 < lines.size() && lines[i + 1] == '\n') {
            ++owed;
            ++i;
            continue;
        }
        text += lines[i];
        if (lines[i] == '\n') {
            text.append(owed, '\n');
            owed = 0;
        }
    }
    return text;
}

int LineOf(std::string_view text, std::size_t position) {
    return 1 + static_cast<int>(std::ranges::count(text.substr(0, position), '\n'));
}

std::string CutText(std::string_view text, std::size_t bytes) {
    if (text.size() <= bytes) return std::string(text);
    while (bytes > 0 && (text[bytes] & 0xC0) == 0x80) --bytes;
    return std::string(text.substr(0, bytes));
}

std::string ScriptLiteral(std::string_view text) {
    std::string literal = "'";
    for (const char c : text) {
        if (c == '\'' || c == '\\') literal += '\\';
        literal += c == '\n' || c == '\r' ? ' ' : c;
    }
    return literal + "'";
}

std::string NumberText(double value) {
    return value == 0 ? "0" : fmt::format("{}", value);
}

}  // namespace quillon::cli
