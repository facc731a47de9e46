#include "cli/import/GlslOutline.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace quillon::cli {

namespace {

bool IsOneOf(const std::string& word, std::initializer_list<std::string_view> words) {
    return std::ranges::find(words, word) != words.end();
}

// The number that a #define or a constant gives this word, or the word.
std::string NumberOf(const GlslTokens& tokens, const std::string& word) {
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (tokens[i].kind != GlslToken::Kind::word || tokens[i].source != word) continue;
        std::size_t next = NextSignificant(tokens, i + 1);
        if (next < tokens.size() && tokens[next].source == "=") next = NextSignificant(tokens, next + 1);
        if (next < tokens.size() && tokens[next].kind == GlslToken::Kind::number) return tokens[next].source;
    }
    return word;
}

// Each global declaration whose first word is one of these, without its semicolon.
std::vector<Varying> TakeDeclarations(GlslTokens& tokens, std::initializer_list<std::string_view> firstWords) {
    std::vector<Varying> declared;
    int depth = 0;
    bool isStart = true;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const GlslToken& token = tokens[i];
        if (!token.isSignificant() || token.isDirective) continue;
        if (depth == 0 && isStart && token.source == "layout") {
            const std::size_t close = ClosingBracket(tokens, NextSignificant(tokens, i + 1));
            for (; i <= close && i < tokens.size(); ++i) tokens[i].text.clear();
            --i;
            continue;
        }
        if (IsOneOf(token.source, {"{", "("})) ++depth;
        if (IsOneOf(token.source, {"}", ")"})) --depth;
        const bool isDeclaration = depth == 0 && isStart && IsOneOf(token.source, firstWords);
        isStart = token.source == ";" || token.source == "}" ||
                  IsOneOf(token.source, {"flat", "smooth", "centroid", "invariant"});
        if (!isDeclaration) continue;
        std::vector<std::string> words;
        const std::size_t begin = i;
        while (i < tokens.size() && tokens[i].source != ";") {
            if (tokens[i].isSignificant()) words.push_back(tokens[i].source);
            ++i;
        }
        for (std::size_t k = begin; k <= i && k < tokens.size(); ++k) {
            if (tokens[k].source != "\n" && tokens[k].kind != GlslToken::Kind::comment) tokens[k].text.clear();
        }
        isStart = true;
        // "varying", qualifiers, the type, then names with or without brackets.
        std::size_t at = 1;
        while (at < words.size() && IsOneOf(words[at], {"flat", "smooth", "centroid", "highp", "mediump", "lowp"}))
            ++at;
        if (at >= words.size()) continue;
        const std::string type = words[at++];
        while (at < words.size()) {
            Varying varying{.type = type, .name = words[at++], .isOut = words[0] == "out"};
            while (at < words.size() && words[at] != ",") varying.array += NumberOf(tokens, words[at++]);
            ++at;
            declared.push_back(varying);
        }
    }
    return declared;
}

}  // namespace

std::set<std::string> FunctionsOf(const GlslTokens& tokens) {
    std::set<std::string> names;
    int depth = 0;
    std::size_t before = tokens.size();
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (!tokens[i].isSignificant() || tokens[i].isDirective) continue;
        const std::string& source = tokens[i].source;
        if (source == "{") ++depth;
        if (source == "}") --depth;
        const std::size_t next = NextSignificant(tokens, i + 1);
        if (depth == 0 && tokens[i].kind == GlslToken::Kind::word && before < tokens.size() &&
            (tokens[before].kind == GlslToken::Kind::word || tokens[before].source == "]") && next < tokens.size() &&
            tokens[next].source == "(")
            names.insert(source);
        before = i;
    }
    return names;
}

int Varying::length() const {
    return array.size() < 3 ? 0 : std::clamp(std::atoi(array.c_str() + 1), 0, 64);
}

std::set<std::string> GlobalsOf(const GlslTokens& tokens) {
    std::set<std::string> names;
    int depth = 0;
    std::size_t before = tokens.size();
    bool isInitializer = false;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (!tokens[i].isSignificant() || tokens[i].isDirective || tokens[i].text.empty()) continue;
        const std::string& source = tokens[i].source;
        if (IsOneOf(source, {"{", "("})) ++depth;
        if (IsOneOf(source, {"}", ")"})) --depth;
        if (depth == 0 && IsOneOf(source, {",", ";", "}"})) isInitializer = false;
        const std::size_t next = NextSignificant(tokens, i + 1);
        const bool isName = tokens[i].kind == GlslToken::Kind::word && before < tokens.size() &&
                            (tokens[before].kind == GlslToken::Kind::word || tokens[before].source == "," ||
                             tokens[before].source == "]");
        if (depth == 0 && isName && !isInitializer && next < tokens.size() &&
            IsOneOf(tokens[next].source, {"=", ";", "[", ","}))
            names.insert(source);
        if (source == "=") isInitializer = true;
        before = i;
    }
    return names;
}

std::vector<Varying> TakeVaryings(GlslTokens& tokens) {
    std::vector<Varying> varyings = TakeDeclarations(tokens, {"varying", "in", "out", "attribute"});
    std::erase_if(varyings, [](const Varying& varying) {
        return varying.name == "isf_FragNormCoord" || varying.name == "vv_FragNormCoord";
    });
    return varyings;
}

std::vector<Varying> TakeUniforms(GlslTokens& tokens) {
    return TakeDeclarations(tokens, {"uniform"});
}

void Rename(GlslTokens& tokens, const std::string& word, const std::string& name) {
    bool isField = false;
    for (GlslToken& token : tokens) {
        if (token.kind == GlslToken::Kind::word && token.source == word && !isField && !token.text.empty())
            token.source = token.text = name;
        if (token.isSignificant()) isField = token.source == ".";
    }
}

void QuoteMainInComments(GlslTokens& tokens) {
    const auto isBlank = [](char c) { return c == ' ' || (c >= '\t' && c <= '\r'); };
    for (GlslToken& token : tokens) {
        if (token.kind != GlslToken::Kind::comment) continue;
        std::string& text = token.text;
        for (std::size_t at = text.find("main"); at != std::string::npos; at = text.find("main", at + 4)) {
            std::size_t next = at + 4;
            while (next < text.size() && isBlank(text[next])) ++next;
            if (at > 0 && isBlank(text[at - 1]) && next < text.size() && text[next] == '(') {
                text.replace(at, 4, "'main'");
                ++at;
            }
        }
    }
}

GlslTokens TakeLeadingComments(GlslTokens& tokens) {
    std::size_t end = 0;
    std::size_t kept = 0;  // after the last line that a comment ends
    bool hasComment = false;
    while (end < tokens.size() && !tokens[end].isSignificant()) {
        hasComment = hasComment || tokens[end].kind == GlslToken::Kind::comment;
        if (tokens[end].source == "\n" && hasComment) kept = end + 1;
        ++end;
    }
    GlslTokens comments(tokens.begin(), tokens.begin() + static_cast<std::ptrdiff_t>(kept));
    tokens.erase(tokens.begin(), tokens.begin() + static_cast<std::ptrdiff_t>(kept));
    const auto first = std::ranges::find(comments, GlslToken::Kind::comment, &GlslToken::kind);
    comments.erase(comments.begin(), first);
    // Of what was taken out only the line ends are left.
    while (!comments.empty() && comments.back().kind == GlslToken::Kind::blank) comments.pop_back();
    return comments;
}

}  // namespace quillon::cli
