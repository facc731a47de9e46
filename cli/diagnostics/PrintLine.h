#pragma once

#include <cstdio>
#include <string_view>

namespace quillon::cli {

// Writes the text and a line feed as they stand. Bytes that are no UTF-8, as a name has that the host cut within a
// letter, pass; formatting libraries fail on them at a Windows terminal, where they write UTF-16.
void PrintLine(std::FILE* file, std::string_view text);

}  // namespace quillon::cli
