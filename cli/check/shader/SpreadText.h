#pragma once

#include <string>
#include <vector>

#include "cli/check/shader/ShaderSource.h"

namespace quillon::cli {

// What the driver gets for a fragment text, with each of the author's tokens on a separate line. A driver then names
// a token by its line, whatever it does to blanks, comments, macros and columns; most name no columns at all. Lines of
// the preprocessor stay whole, and so does the call of a macro, whose line ends drivers do not count alike. #line is
// left out.
struct SpreadText {
    explicit SpreadText(const ShaderSource& source);

    std::string text;

    // What the driver's line holds: indices of source.tokens(). Empty for a line that is not the author's.
    std::vector<std::size_t> tokensAt(int line) const;

private:
    struct Line {
        std::size_t begin;
        std::size_t end;
    };
    int firstLine;  // of the author's
    std::vector<Line> lines;
};

}  // namespace quillon::cli
