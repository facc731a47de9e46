#pragma once

#include <string>
#include <string_view>

namespace quillon {

// Names of files and keys are wide inside the engine and bytes outside. A byte becomes the character of the same number
// and the other way round, in every locale, so that no name changes on the way.

// One character for each byte.
std::wstring WidenBytes(std::string_view bytes);

// One byte for each character; a character above 255 has no byte and becomes '?'.
std::string NarrowToBytes(std::wstring_view text);

}  // namespace quillon
