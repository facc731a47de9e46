#include "package/XmlNesting.h"

#include <algorithm>

namespace quillon {

namespace {

constexpr const char* kBlanks = " \t\r\n";
constexpr auto kNowhere = std::string::npos;

// Each takes the place of a '<' and gives the place after what starts there; kNowhere when that has no end, where the
// parser gives up.

std::size_t After(const std::string& text, const char* ending, std::size_t from) {
    const std::size_t found = text.find(ending, from);
    return found == kNowhere ? kNowhere : found + std::char_traits<char>::length(ending);
}

// A document type ends at the first '>' outside of square brackets.
std::size_t AfterDocumentType(const std::string& text, std::size_t at) {
    int brackets = 0;
    for (; at < text.size(); ++at) {
        if (text[at] == '[') ++brackets;
        if (text[at] == ']') brackets = std::max(0, brackets - 1);
        if (text[at] == '>' && brackets == 0) return at + 1;
    }
    return kNowhere;
}

std::size_t BehindDeclaration(const std::string& text, std::size_t at) {
    if (text.compare(at, 4, "<!--") == 0) return After(text, "-->", at + 4);
    if (text.compare(at, 9, "<![CDATA[") == 0) return After(text, "]]>", at + 9);
    const bool isDocumentType = text.compare(at, 9, "<!DOCTYPE") == 0 && at + 9 < text.size() &&
                                std::string(kBlanks).find(text[at + 9]) != kNowhere;
    return isDocumentType ? AfterDocumentType(text, at) : After(text, ">", at);
}

// The '>' of an opening tag, or the '/' of a tag that closes itself.
std::size_t EndOfTag(const std::string& text, std::size_t at) {
    at = text.find_first_of(" \t\r\n/>?", at + 1);
    while (at != kNowhere) {
        at = text.find_first_not_of(kBlanks, at);
        if (at == kNowhere || text[at] == '>' || text[at] == '/') break;
        at = text.find('=', at);
        if (at != kNowhere) at = text.find_first_not_of(kBlanks, at + 1);
        if (at == kNowhere || (text[at] != '"' && text[at] != '\'')) return kNowhere;
        at = text.find(text[at], at + 1);
        if (at != kNowhere) ++at;
    }
    return at;
}

}  // namespace

bool XmlNestsDeeperThan(const std::string& text, int limit) {
    int level = 0;
    for (std::size_t at = 0; (at = text.find('<', at)) != kNowhere;) {
        const char next = at + 1 < text.size() ? text[at + 1] : '\0';
        if (next == '/') {
            --level;
            at = After(text, ">", at);
        } else if (next == '!') {
            at = BehindDeclaration(text, at);
        } else if (next == '?') {
            at = After(text, "?>", at + 2);
        } else {
            at = EndOfTag(text, at);
            if (at != kNowhere && text[at] == '>' && ++level > limit) return true;
        }
        if (at == kNowhere) break;
    }
    return false;
}

}  // namespace quillon
