#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::cli {

// A piece of GLSL text. All pieces of a text, joined, are the text again.
struct GlslToken {
    enum class Kind { blank, comment, word, number, mark };

    Kind kind;
    std::string source;        // as the author wrote it
    std::string text;          // as it is written out; empty when it is left out
    int line;                  // of the author's file, from 1
    bool isDirective = false;  // on a preprocessor line

    bool isSignificant() const { return kind != Kind::blank && kind != Kind::comment; }
};

using GlslTokens = std::vector<GlslToken>;

// Cuts any text into tokens; what no rule knows becomes a mark of one byte. Lines end in a line feed only.
GlslTokens ReadTokens(std::string_view text, int firstLine);

// The text to write out.
std::string JoinTokens(const GlslTokens& tokens);

// The next token at or after `at` that is neither blank nor comment, or the number of tokens.
std::size_t NextSignificant(const GlslTokens& tokens, std::size_t at);

// The bracket that closes the one at `open`, or the number of tokens.
std::size_t ClosingBracket(const GlslTokens& tokens, std::size_t open);

// All words of the text, those of preprocessor lines too.
std::set<std::string> WordsOf(const GlslTokens& tokens);

// `wish` when no name of the set equals it, else with the first number after it that makes it new.
std::string UnusedName(const std::set<std::string>& names, const std::string& wish);

}  // namespace quillon::cli
