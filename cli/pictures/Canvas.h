#pragma once

#include <array>
#include <cmath>
#include <cstdint>

#include "cli/pictures/Picture.h"

namespace quillon::cli {

using Color = std::array<float, 3>;  // red, green, blue, 0 to 1

// A box in pixels; pixel (x, y) covers x to x + 1, y to y + 1, y downwards.
struct Box {
    float left, top, right, bottom;
    float width() const { return right - left; }
    float height() const { return bottom - top; }
    Box inset(float by) const { return {left + by, top + by, right - by, bottom - by}; }
};

// How much of a pixel is inside of an edge that is `distance` pixels away from its middle, inside being negative.
inline float Coverage(float distance) {
    return std::fmin(1.0f, std::fmax(0.0f, 0.5f - distance));
}

// An opaque float picture to paint on, with an alpha channel that is cut separately.
class Canvas {
public:
    Canvas(std::uint32_t width, std::uint32_t height);

    // Calls `paint(x, y, color)` with the middle of each pixel that the box touches and that is on the canvas;
    // `color` is what is there, and what it returns is mixed in as far as the box covers the pixel.
    template <class Paint>
    void fill(const Box& box, Paint paint) {
        forEach(box, [&](float x, float y, float* pixel) {
            const float share =
                Coverage(std::fmax(box.left - x, x - box.right)) * Coverage(std::fmax(box.top - y, y - box.bottom));
            const Color there = {pixel[0], pixel[1], pixel[2]};
            const Color color = paint(x, y, there);
            for (int i = 0; i < 3; ++i) pixel[i] += (color[i] - pixel[i]) * share;
        });
    }

    // Multiplies the alpha by `keep(x, y)`.
    template <class Keep>
    void cut(const Box& box, Keep keep) {
        forEach(box, [&](float x, float y, float* pixel) { pixel[3] *= keep(x, y); });
    }

    Box frame() const;
    const Picture& picture() const { return painted; }

private:
    template <class Visit>
    void forEach(const Box& box, Visit visit) {
        const auto clamp = [](float value, std::uint32_t end) {
            return static_cast<std::uint32_t>(std::fmin(static_cast<float>(end), std::fmax(0.0f, value)));
        };
        const std::uint32_t right = clamp(std::ceil(box.right), painted.width);
        const std::uint32_t bottom = clamp(std::ceil(box.bottom), painted.height);
        for (std::uint32_t y = clamp(box.top, painted.height); y < bottom; ++y) {
            for (std::uint32_t x = clamp(box.left, painted.width); x < right; ++x) {
                visit(static_cast<float>(x) + 0.5f, static_cast<float>(y) + 0.5f, painted.row<float>(y) + 4 * x);
            }
        }
    }

    Picture painted;
};

inline Color Mix(const Color& from, const Color& to, float share) {
    return {from[0] + (to[0] - from[0]) * share, from[1] + (to[1] - from[1]) * share,
            from[2] + (to[2] - from[2]) * share};
}

}  // namespace quillon::cli
