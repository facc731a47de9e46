#include "cli/pictures/Label.h"

#include <algorithm>
#include <vector>

// The library's functions are static, and not all of them are used.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#include <stb/stb_easy_font.h>
#pragma GCC diagnostic pop

namespace quillon::cli {

namespace {

constexpr float kScale = 2;
constexpr float kTop = 4;

// The corners of a rectangle, as the library gives them.
struct Corner {
    float x, y, z;
    unsigned char color[4];
};

}  // namespace

void DrawLabel(Picture& picture, std::uint32_t left, std::uint32_t top, std::uint32_t width, std::string text) {
    constexpr std::size_t kMostLetters = 200, kMostCorners = kMostLetters * 4 * 20;
    text.resize(std::min(text.size(), kMostLetters));
    std::ranges::replace_if(
        text, [](char c) { return c < ' ' || c > '~'; }, '?');
    std::vector<Corner> corners(kMostCorners);
    const int rectangles = stb_easy_font_print(0, 0, text.data(), nullptr, corners.data(),
                                               static_cast<int>(corners.size() * sizeof(Corner)));
    for (int i = 0; i < rectangles; ++i) {
        const Corner &first = corners[4 * i], &last = corners[4 * i + 2];
        const auto right = std::min(static_cast<std::uint32_t>(last.x * kScale), width);
        const auto bottom = std::min(static_cast<std::uint32_t>(kTop + last.y * kScale), kLabelHeight);
        for (auto y = static_cast<std::uint32_t>(kTop + first.y * kScale); y < bottom; ++y) {
            auto* const row = picture.row<std::uint8_t>(top + y) + std::size_t{4} * left;
            for (auto x = static_cast<std::uint32_t>(first.x * kScale); x < right; ++x)
                std::fill_n(row + std::size_t{4} * x, 4, std::uint8_t{255});
        }
    }
}

}  // namespace quillon::cli
