#pragma once

#include <string>
#include <string_view>

namespace quillon {

// File and key names are wide inside the system and bytes outside of it. A byte and the character of the same number
// stand for each other, whatever the locale, so that every name survives the way there and back.

std::wstring WidenBytes(std::string_view bytes);

// A character above 255 stands for no byte and becomes '?'.
std::string NarrowToBytes(std::wstring_view text);

}  // namespace quillon
