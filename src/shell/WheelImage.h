#pragma once

#include <cstdint>
#include <vector>

namespace quillon {

// Each channel from 0 to 1.
struct WheelColor {
    float red, green, blue;
};

// The picture of the color wheel: a disc of hue by angle and saturation by distance at full value, a strip of alpha
// below and a strip of gray at the right. A pixel is 32 bits, alpha in the top byte, then red, green, blue.
class WheelImage {
public:
    // The process's one image, drawn anew when another size is asked for; a side of 0 takes what is there.
    static const WheelImage& OfSize(int width, int height);

    // Rows are tight, the top one first.
    int width() const { return columns; }
    int height() const { return rows; }
    const std::uint32_t* pixels() const { return image.data(); }
    // 0 outside of the picture.
    std::uint32_t pixelAt(int x, int y) const;

    // The disc, in pixels from the picture's top left corner.
    float centerX() const { return static_cast<float>(columns) / 2; }
    float centerY() const { return static_cast<float>(rows) / 2; }
    float radius() const;

    // The color of a point; false outside of the disc.
    bool colorAt(float x, float y, WheelColor& color) const;

private:
    void draw(int width, int height);

    int columns = 0;
    int rows = 0;
    std::vector<std::uint32_t> image;
};

}  // namespace quillon
