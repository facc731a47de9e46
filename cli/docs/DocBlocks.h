#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillon::cli {

// A page of the documentation, free of its Markdown. Texts are UTF-8.

struct DocSpan {
    enum class Style { plain, code, strong };
    std::string text;
    Style style = Style::plain;

    bool operator==(const DocSpan&) const = default;
};
using DocText = std::vector<DocSpan>;

// The text without its styles.
std::string PlainText(const DocText& text);

struct DocBlock {
    enum class Kind { heading, paragraph, code, table };

    Kind kind = Kind::paragraph;
    unsigned level = 0;                           // of a heading, from 1
    std::size_t depth = 0;                        // how many lists it is in
    std::string marker = {};                      // "-" or "3." where it begins an item of a list
    DocText text = {};                            // of code one span, with its line feeds
    std::vector<std::vector<DocText>> rows = {};  // of a table; the first one is its head
};

// Reads a page. HTML in it is left out, pictures are their descriptions.
std::vector<DocBlock> ReadMarkdown(std::string_view page);

}  // namespace quillon::cli
