#pragma once

#include <string_view>

namespace quillon::cli {

// These write the text and a line feed unchanged. Bytes that are not UTF-8, as in a name that the host cut within a
// letter, pass; formatting libraries fail on them at a Windows terminal, where they write UTF-16.

// A result, on standard output, where a reader sees it at once. Throws a Fault when it cannot be written.
void PrintResult(std::string_view text);

// Words for the user, on standard error. What cannot be written is lost.
void PrintWords(std::string_view text);
// The same where a progress bar may be in the terminal's last line, which goes; its next step brings it back.
void PrintWordsOverBar(std::string_view text);

}  // namespace quillon::cli
