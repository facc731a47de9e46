#pragma once

#include <string>
#include <string_view>

namespace quillon::cli {

// A shader file's bytes as the converter works on them: UTF-8 (what is not, is read as Latin-1), no byte order mark,
// lines that end in a line feed, and lines that end in a backslash joined with the next. Line numbers stay: what a
// joined line lacks follows it as empty lines. A zero byte becomes a blank.
std::string NormalizeSource(std::string_view bytes);

// Lines before this position, plus one.
int LineOf(std::string_view text, std::size_t position);

// At most `bytes` bytes of a UTF-8 text, cut between characters.
std::string CutText(std::string_view text, std::size_t bytes);

// The text in single quotes, as a literal of JavaScript.
std::string ScriptLiteral(std::string_view text);

// A number as JavaScript and GLSL read it back: the shortest form, without a sign of zero.
std::string NumberText(double value);

}  // namespace quillon::cli
