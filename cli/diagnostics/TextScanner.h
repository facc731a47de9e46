#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quillon::cli {

// The first three take something from the front of the text, or give their negative and leave it as it is.

// This text, letter by letter.
bool TakeText(std::string_view& text, std::string_view expected);
// A run of one to nine decimal digits; a longer run counts as no number.
std::optional<int> TakeNumber(std::string_view& text);

// Always possible.
void TakeBlanks(std::string_view& text);

// Whether the word occurs in the text with no letter, digit or underscore on either side.
bool HoldsWord(std::string_view text, std::string_view word);

bool IsWordCharacter(char c);  // a letter or digit of ASCII, or an underscore

// With the letters A to Z made small; all other bytes stay.
std::string InLowerCase(std::string text);

// "a float", "an int": by the first letter.
std::string WithArticle(std::string_view word);

// Where a byte of a text is, as editors count: from 1, columns in characters of UTF-8, a tab is one, a mark at the
// text's start (BOM) none. Positions after the end are the end's.
int LineAt(std::string_view text, std::size_t position);
int ColumnAt(std::string_view text, std::size_t position);

}  // namespace quillon::cli
