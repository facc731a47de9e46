#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "cli/glsl/GlslTokens.h"

namespace quillon::cli {

// A place in an author's text. Lines and columns count from 1, columns in code points; a tab is one of them. A byte
// order mark at the start of a file does not count, since editors do not show it.
struct TextPlace {
    int line = 0;
    int column = 0;

    // NOLINTNEXTLINE(modernize-use-nullptr): clang-tidy takes the default's 0 for a pointer
    auto operator<=>(const TextPlace&) const = default;
};

// A token that counts: no blank and no comment.
struct SourceToken {
    // Whether the preprocessor keeps it. `unknown` where that depends on what only a driver knows.
    enum class Presence { kept, unknown, left };

    GlslToken::Kind kind = GlslToken::Kind::mark;
    std::string text{};        // the author's
    std::string given{};       // what the driver gets in its place
    std::size_t position = 0;  // of its first byte
    bool isDirective = false;  // on a preprocessor line
    bool startsDirective = false;
    Presence presence = Presence::kept;

    bool isWord() const { return kind == GlslToken::Kind::word; }
    bool isRenamed() const { return text != given; }
};

// A fragment text as its author wrote it, with what the engine's rewriting and the preprocessor make of its parts. A
// line ends as editors see it: in a line feed, a carriage return, or both. Where a line goes on after a backslash, it
// is the next line of the text, but the same line for the preprocessor. Text after a zero byte does not count.
class ShaderSource {
public:
    explicit ShaderSource(std::string_view text);

    const std::vector<SourceToken>& tokens() const { return all; }
    // The same without preprocessor lines and without what the preprocessor leaves out.
    const std::vector<SourceToken>& code() const { return kept; }
    // Whether the preprocessor's choices are all known, and no macro holds a bracket without its partner, so that the
    // code can be read as a whole.
    bool isCertain() const { return certain; }

    TextPlace placeOf(std::size_t position) const;
    TextPlace placeOf(const SourceToken& token) const { return placeOf(token.position); }
    // The byte at a place of this text.
    std::size_t positionOf(TextPlace place) const;
    // The word of the code that begins there, empty where none does.
    std::string_view wordAt(TextPlace place) const;
    int lineOf(std::size_t position) const;
    // Where the statement around this place ends: at the next semicolon or brace of the code.
    std::size_t statementEnd(std::size_t position) const;
    int lineCount() const { return static_cast<int>(lineStarts.size()); }
    bool namesLines() const { return !namedLines.empty(); }  // by #line
    // The number that a #line before it gives this line; 0 without one.
    int namedLine(int line) const;

    std::string text;             // as given
    std::string rewritten;        // what the driver gets
    std::size_t addedLines = 0;   // of the rewritten text before the author's
    std::string addedTail;        // after the author's
    std::size_t openComment = 0;  // where a comment begins that nothing ends; npos without one
    bool hasOrderMark = false;

    // The index in code() of the bracket that closes the one at `open`; the number of tokens when none does.
    std::size_t closing(std::size_t open) const { return open < partners.size() ? partners[open] : kept.size(); }
    // The text of a token of code(), empty beyond its end.
    const std::string& codeText(std::size_t index) const;

private:
    std::size_t startOf(int line) const;
    void findPartners();
    void findNamedLines();

    std::vector<SourceToken> all;
    std::vector<SourceToken> kept;
    std::vector<std::size_t> partners;
    std::vector<std::size_t> lineStarts;
    struct NamedLine {
        int line;    // of the directive
        int number;  // that it gives itself
    };
    std::vector<NamedLine> namedLines;
    bool certain = true;
};

}  // namespace quillon::cli
