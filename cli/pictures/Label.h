#pragma once

#include <cstdint>
#include <string>

#include "cli/pictures/Picture.h"

namespace quillon::cli {

// Rows that a label takes.
inline constexpr std::uint32_t kLabelHeight = 24;

// Writes one line of white text into an 8-bit picture, from its top left corner, as far as it fits into the width.
void DrawLabel(Picture& picture, std::uint32_t left, std::uint32_t top, std::uint32_t width, std::string text);

}  // namespace quillon::cli
