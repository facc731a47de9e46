#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace quillon {

// The path of a UTF-8 text. Unlike a path made of the text itself it is right on Windows too, where narrow text counts
// as one of a few hundred characters. (The way back, path::string(), gives UTF-8 on every system.)
inline std::filesystem::path PathFromUtf8(std::string_view text) {
    return std::u8string(text.begin(), text.end());
}

}  // namespace quillon
