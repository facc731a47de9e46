#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::cli {

// A place in the author's file, as editors show it.
struct AuthorPlace {
    int line;    // from 1
    int column;  // from 1, in code points; a tab is one, and so is a line feed's carriage return
};

// The program as the engine reads it, with its shorthands written out, and the way back to the author's places.
class AuthorText {
public:
    // The author's text must outlive this. It ends at its first zero byte, as it does for the engine.
    explicit AuthorText(std::string_view author);

    const std::string& prepared() const { return text; }

    // Where places in the prepared text are in the author's. They count bytes and ascend. A mark of the encoding at
    // the start of the text has no column.
    std::vector<AuthorPlace> authorPlaces(const std::vector<std::size_t>& places) const;

private:
    struct Shift {
        std::size_t prepared;  // from here on
        std::size_t author;    // the author's text goes on here
    };

    std::string_view author;
    std::string text;
    std::vector<Shift> shifts = {{0, 0}};
};

}  // namespace quillon::cli
