#include "cli/diagnostics/TextScanner.h"

#include <algorithm>
#include <charconv>

namespace quillon::cli {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

}  // namespace

bool TakeText(std::string_view& text, std::string_view expected) {
    if (!text.starts_with(expected)) return false;
    text.remove_prefix(expected.size());
    return true;
}

std::optional<int> TakeNumber(std::string_view& text) {
    std::size_t digits = 0;
    while (digits < text.size() && IsDigit(text[digits])) ++digits;
    if (digits == 0 || digits > 9) return {};
    int number = 0;
    std::from_chars(text.data(), text.data() + digits, number);
    text.remove_prefix(digits);
    return number;
}

void TakeBlanks(std::string_view& text) {
    while (TakeText(text, " ")) {
    }
}

bool HoldsWord(std::string_view text, std::string_view word) {
    for (std::size_t at = text.find(word); at != std::string_view::npos; at = text.find(word, at + 1)) {
        const std::size_t end = at + word.size();
        const bool isInside =
            (at > 0 && IsWordCharacter(text[at - 1])) || (end < text.size() && IsWordCharacter(text[end]));
        if (!isInside) return true;
    }
    return false;
}

bool IsWordCharacter(char c) {
    return IsDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

std::string InLowerCase(std::string text) {
    for (char& c : text) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
    return text;
}

std::string WithArticle(std::string_view word) {
    const bool isVowel = !word.empty() && std::string_view("aeioAEIO").find(word.front()) != std::string_view::npos;
    return (isVowel ? "an " : "a ") + std::string(word);
}

int LineAt(std::string_view text, std::size_t position) {
    return 1 + static_cast<int>(std::ranges::count(text.substr(0, position), '\n'));
}

int ColumnAt(std::string_view text, std::size_t position) {
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    std::string_view before = text.substr(0, position);
    if (const std::size_t lineEnd = before.rfind('\n'); lineEnd != std::string_view::npos)
        before.remove_prefix(lineEnd + 1);
    else if (before.starts_with(kMark))
        before.remove_prefix(kMark.size());
    return 1 + static_cast<int>(std::ranges::count_if(before, [](char c) { return (c & 0xC0) != 0x80; }));
}

}  // namespace quillon::cli
