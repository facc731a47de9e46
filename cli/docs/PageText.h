#pragma once

#include <span>
#include <string>

#include "cli/docs/DocBlocks.h"

namespace quillon::cli {

// What the page is written for.
struct PageLook {
    std::size_t columns = 80;
    bool hasStyles = false;  // by the escape sequences of terminals
};

// The blocks as lines for a terminal or a pipe, each with its line feed.
std::string WritePageText(std::span<const DocBlock> blocks, const PageLook& look);

// The same for `man`: a page of this name and section, whose first block is its title.
std::string WriteManPage(std::span<const DocBlock> blocks, const std::string& name, int section);

// A table's lines, in columns that are as wide as there is room. No styles but in its head.
std::string WriteTable(const DocBlock& table, const PageLook& look);

// Columns that a text takes, at one a character.
std::size_t WidthOfText(std::string_view text);

// A text in lines of at most so many columns, except for words that are longer.
std::vector<DocText> WrapText(const DocText& text, std::size_t columns);

}  // namespace quillon::cli
