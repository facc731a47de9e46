#include "shell/WheelImage.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quillon {

namespace {

constexpr float kMargin = 10;
constexpr float kPi = std::numbers::pi_v<float>;

std::uint32_t Argb(std::uint32_t alpha, const WheelColor& color) {
    const auto byte = [](float channel) { return static_cast<std::uint32_t>(channel * 255.0f); };
    return alpha << 24 | byte(color.red) << 16 | byte(color.green) << 8 | byte(color.blue);
}

// Hue in radians, at full value.
WheelColor FromHue(float hue, float saturation) {
    if (saturation <= 1e-5f) return {1, 1, 1};
    if (hue >= 2 * kPi) hue = 0;
    const float sector = hue / (kPi / 3);
    const int whole = static_cast<int>(sector);
    const float fraction = sector - static_cast<float>(whole);
    const float low = 1 - saturation;
    const float falling = 1 - saturation * fraction;
    const float rising = 1 - saturation * (1 - fraction);
    const WheelColor sectors[] = {{1, rising, low},  {falling, 1, low}, {low, 1, rising},
                                  {low, falling, 1}, {rising, low, 1},  {1, low, falling}};
    return sectors[std::clamp(whole, 0, 5)];
}

}  // namespace

const WheelImage& WheelImage::OfSize(int width, int height) {
    static WheelImage wheel;
    const bool isKept = width <= 0 || height <= 0 || (width == wheel.columns && height == wheel.rows);
    if (!isKept) wheel.draw(width, height);
    return wheel;
}

float WheelImage::radius() const {
    return static_cast<float>(std::min(columns, rows)) / 2 - kMargin;
}

std::uint32_t WheelImage::pixelAt(int x, int y) const {
    if (x < 0 || y < 0 || x >= columns || y >= rows) return 0;
    return image[static_cast<std::size_t>(y) * static_cast<std::size_t>(columns) + static_cast<std::size_t>(x)];
}

bool WheelImage::colorAt(float x, float y, WheelColor& color) const {
    const float dx = x - centerX();
    const float dy = y - centerY();
    const float distance = std::hypot(dx, dy);
    if (!(distance < radius())) return false;
    color = FromHue(std::atan2(dy, dx) + kPi, distance / radius());
    return true;
}

void WheelImage::draw(int width, int height) {
    columns = width;
    rows = height;
    image.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0);
    const auto set = [&](int x, int y, std::uint32_t pixel) {
        if (x >= 0 && y >= 0 && x < columns && y < rows)
            image[static_cast<std::size_t>(y) * static_cast<std::size_t>(columns) + static_cast<std::size_t>(x)] =
                pixel;
    };
    for (int y = 0; y < rows; ++y) {
        for (int x = 0; x < columns; ++x) {
            WheelColor color{};
            if (colorAt(static_cast<float>(x), static_cast<float>(y), color)) set(x, y, Argb(255, color));
        }
    }
    const int reach = static_cast<int>(radius());
    const int middle = columns / 2;
    for (int y = rows - 8; y <= rows - 3; ++y) {
        for (int x = middle - reach; x <= middle + reach; ++x) {
            const int alpha = reach > 0 ? (x - (middle - reach)) * 255 / (2 * reach) : 0;
            set(x, y, Argb(static_cast<std::uint32_t>(alpha), {1, 1, 1}));
        }
    }
    if (rows - 10 <= 10) return;
    for (int y = 10; y <= rows - 11; ++y) {
        const float gray = rows > 21 ? 1 - static_cast<float>(y - 10) / static_cast<float>(rows - 21) : 1;
        for (int x = 0; x < 6; ++x) set(middle + reach + 4 + x, y, Argb(0xFE, {gray, gray, gray}));
    }
}

}  // namespace quillon
