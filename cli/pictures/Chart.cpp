#include "cli/pictures/Chart.h"

#include <algorithm>
#include <cmath>

#include "cli/pictures/Canvas.h"

namespace quillon::cli {

namespace {

// No function of the system's mathematics library but roots, remainders and rounding: all else gives other last digits
// on other systems, and the picture is the same everywhere.

constexpr Color kWhite = {1, 1, 1};
constexpr Color kNight = {0.045f, 0.055f, 0.10f};
constexpr Color kPatches[] = {
    {0.36f, 0.25f, 0.20f}, {0.76f, 0.58f, 0.50f}, {0.35f, 0.47f, 0.61f}, {0.34f, 0.42f, 0.26f},
    {0.52f, 0.50f, 0.69f}, {0.40f, 0.74f, 0.67f}, {0.86f, 0.49f, 0.17f}, {0.28f, 0.36f, 0.64f},
    {0.76f, 0.33f, 0.38f}, {0.62f, 0.73f, 0.25f}, {0.95f, 0.77f, 0.18f}, {0.70f, 0.22f, 0.24f},
};
constexpr Color kRamps[] = {{1, 1, 1}, {1, 0.1f, 0.1f}, {0.1f, 0.9f, 0.25f}, {0.15f, 0.35f, 1}};

float Distance(float x, float y, float centerX, float centerY) {
    return std::sqrt((x - centerX) * (x - centerX) + (y - centerY) * (y - centerY));
}

// A part of a box, in shares of its extent.
Box Part(const Box& box, float left, float top, float right, float bottom) {
    return {box.left + left * box.width(), box.top + top * box.height(), box.left + right * box.width(),
            box.top + bottom * box.height()};
}

void PaintDisc(Canvas& canvas, float x, float y, float radius, const Color& color, float opacity) {
    canvas.fill({x - radius - 1, y - radius - 1, x + radius + 1, y + radius + 1},
                [&](float px, float py, const Color& there) {
                    return Mix(there, color, opacity * Coverage(Distance(px, py, x, y) - radius));
                });
}

// A light: white in its middle, falling off in its color.
void PaintLight(Canvas& canvas, float x, float y, float radius, const Color& color) {
    canvas.fill({x - 4 * radius, y - 4 * radius, x + 4 * radius, y + 4 * radius}, [&](float px, float py,
                                                                                      const Color& there) {
        const float d = Distance(px, py, x, y) / radius;
        const float halo = d < 4 ? 0.35f * (1 - d / 4) * (1 - d / 4) : 0;
        return Mix(Mix(there, color, halo), Mix(kWhite, color, std::fmin(1.0f, d * 0.6f)), Coverage((d - 1) * radius));
    });
}

void PaintGround(Canvas& canvas) {
    const Box frame = canvas.frame();
    const float step = frame.height() / 12;
    canvas.fill(frame, [&](float x, float y, const Color&) {
        const Color sky = Mix({0.16f, 0.19f, 0.27f}, {0.30f, 0.25f, 0.33f}, y / frame.height());
        const float toLine = std::fmin(std::fmod(x, step), std::fmod(y, step));
        return Mix(sky, {0.45f, 0.48f, 0.58f}, toLine < 1 ? 0.35f : 0.0f);
    });
}

void PaintPatches(Canvas& canvas, const Box& box) {
    constexpr int kColumns = 6;
    for (int i = 0; i < static_cast<int>(std::size(kPatches)); ++i) {
        const float column = static_cast<float>(i % kColumns);
        const int rowNumber = i / kColumns;
        const auto row = static_cast<float>(rowNumber);
        const Box patch = Part(box, column / kColumns, row / 2, (column + 1) / kColumns, (row + 1) / 2);
        canvas.fill(patch.inset(box.height() * 0.02f), [&](float, float, const Color&) { return kPatches[i]; });
    }
}

// Ramps from black, the first in 11 steps below the smooth one.
void PaintRamps(Canvas& canvas, const Box& box) {
    for (int i = 0; i < 5; ++i) {
        const Box ramp = Part(box, 0, static_cast<float>(i) / 5, 1, static_cast<float>(i + 1) / 5);
        canvas.fill(ramp, [&](float x, float, const Color&) {
            const float share = (x - box.left) / box.width();
            const float value = i == 1 ? std::fmin(10.0f, std::floor(share * 11)) / 10 : share;
            return Mix({0, 0, 0}, kRamps[i < 2 ? 0 : i - 1], value);
        });
    }
}

// Groups of lines 1 to 5 pixels wide: upright in the upper half, lying in the lower.
void PaintLines(Canvas& canvas, const Box& box) {
    for (int i = 0; i < 5; ++i) {
        const int period = 2 * (i + 1);
        const Box group = Part(box, static_cast<float>(i) / 5, 0, static_cast<float>(i + 1) / 5, 1);
        canvas.fill(group.inset(2), [&](float x, float y, const Color&) {
            const float along = y < (box.top + box.bottom) / 2 ? x - group.left : y - box.top;
            const bool isLine = static_cast<int>(along) % period < period / 2;
            return isLine ? kWhite : kNight;
        });
    }
}

// The angle of (x, y) from the x axis in half turns, -1 to 1. The system's own function rounds differently from system
// to system; sums, products and roots do not.
float HalfTurns(float x, float y) {
    const double across = std::fabs(x), up = std::fabs(y);
    double slope = std::fmin(across, up) / std::fmax(std::fmax(across, up), 1e-9f);
    // Twice half the angle, so that few terms of the series are enough for a float.
    for (int i = 0; i < 2; ++i) slope /= 1 + std::sqrt(1 + slope * slope);
    const double square = slope * slope;
    double series = 0;
    for (int divisor = 11; divisor > 0; divisor -= 2) series = 1.0 / divisor - series * square;
    double turn = 4 * slope * series / 3.14159265358979324;
    if (up > across) turn = 0.5 - turn;
    if (x < 0) turn = 1 - turn;
    return static_cast<float>(y < 0 ? -turn : turn);
}

// A star of wedges that meet in the middle, in a ring.
void PaintStar(Canvas& canvas, float x, float y, float radius, float motion) {
    constexpr int kWedges = 24;
    constexpr float kPairs = 6;  // of wedges that pass in all of the motion
    constexpr float kWedgeAngle = 3.14159265f / kWedges;
    PaintDisc(canvas, x, y, radius * 1.12f, {0.93f, 0.90f, 0.82f}, 1);
    canvas.fill({x - radius - 1, y - radius - 1, x + radius + 1, y + radius + 1},
                [&](float px, float py, const Color& there) {
                    const float d = Distance(px, py, x, y);
                    const float turn = HalfTurns(px - x, py - y) * kWedges - 2 * kPairs * motion;
                    const float phase = std::fabs(turn - 2 * std::floor(turn / 2) - 1) - 0.5f;
                    const float edge = phase * d * kWedgeAngle;  // pixels to the nearest edge of a wedge
                    return Mix(there, kNight, Coverage(edge) * Coverage(d - radius));
                });
    PaintDisc(canvas, x, y, radius * 0.09f, {0.86f, 0.20f, 0.18f}, 1);
}

// Lights on a dark ground, for effects that look for what is bright.
void PaintNight(Canvas& canvas, const Box& box, float sway) {
    canvas.fill(box, [&](float, float y, const Color&) {
        return Mix(kNight, {0.10f, 0.07f, 0.14f}, (y - box.top) / box.height());
    });
    // The sines of 20 degrees, 60 degrees and so on.
    constexpr float kWave[] = {0.34202014f,  0.8660254f,  0.9848078f,  0.64278761f, 0,
                               -0.64278761f, -0.9848078f, -0.8660254f, -0.34202014f};
    for (int i = 0; i < 9; ++i) {
        const float along = (static_cast<float>(i) + 0.5f + 0.4f * sway) / 9;
        const float x = box.left + along * box.width();
        const float y = box.top + box.height() * (0.5f - 0.26f * kWave[i]);
        PaintLight(canvas, x, y, box.height() * (0.05f + 0.012f * static_cast<float>(i % 3)),
                   kPatches[(i * 5 + 6) % 12]);
    }
}

// Three colors that overlap, half transparent as paint, with rings around them.
void PaintDiscs(Canvas& canvas, float x, float y, float radius) {
    constexpr Color kInks[] = {{0.95f, 0.25f, 0.30f}, {0.98f, 0.80f, 0.20f}, {0.20f, 0.55f, 0.95f}};
    constexpr float kPlaces[][2] = {{0, -0.5f}, {0.4330127f, 0.25f}, {-0.4330127f, 0.25f}};  // in radii
    for (int i = 0; i < 3; ++i) {
        PaintDisc(canvas, x + kPlaces[i][0] * radius, y + kPlaces[i][1] * radius, 0.62f * radius, kInks[i], 0.72f);
    }
    canvas.fill({x - radius * 1.5f, y - radius * 1.5f, x + radius * 1.5f, y + radius * 1.5f},
                [&](float px, float py, const Color& there) {
                    const float d = Distance(px, py, x, y);
                    const float ring = std::fmin(std::fabs(d - 1.2f * radius), std::fabs(d - 1.32f * radius)) - 1.2f;
                    return Mix(there, kWhite, 0.85f * Coverage(ring));
                });
}

// An arrow that points up, in the top left corner.
void PaintArrow(Canvas& canvas, const Box& box) {
    canvas.fill(box, [&](float x, float y, const Color& there) {
        const float half = (y - box.top) * 0.5f * box.width() / box.height();
        return Mix(there, {0.98f, 0.80f, 0.20f}, Coverage(std::fabs(x - (box.left + box.right) / 2) - half));
    });
}

// Round corners of the frame, a soft hole, and a strip that fades from left to right.
void CutTransparency(Canvas& canvas, const Box& fade, float holeX, float holeY, float holeRadius) {
    const Box frame = canvas.frame();
    const float round = frame.height() / 14;
    canvas.cut(frame, [&](float x, float y) {
        const float cornerX = std::fmax(0.0f, std::fmax(round - x, x - frame.right + round));
        const float cornerY = std::fmax(0.0f, std::fmax(round - y, y - frame.bottom + round));
        return Coverage(std::sqrt(cornerX * cornerX + cornerY * cornerY) - round);
    });
    canvas.cut({holeX - holeRadius, holeY - holeRadius, holeX + holeRadius, holeY + holeRadius}, [&](float x, float y) {
        const float d = std::fmin(1.0f, Distance(x, y, holeX, holeY) / holeRadius);
        const float rise = std::fmax(0.0f, (d - 0.35f) / 0.65f);
        return rise * rise * (3 - 2 * rise);
    });
    canvas.cut(fade, [&](float x, float) { return std::clamp(1 - (x - fade.left) / fade.width(), 0.0f, 1.0f); });
}

}  // namespace

Picture DrawChart(std::uint32_t width, std::uint32_t height, float motion) {
    Canvas canvas(width, height);
    const Box frame = canvas.frame();
    const Box all = Part(frame, 0.035f, 0.06f, 0.965f, 0.94f);
    const float unit = std::fmin(frame.width() / 16, frame.height() / 9);
    const float sway = 1 - std::fabs(2 * motion - 1);  // up to 1 and back
    PaintGround(canvas);
    PaintArrow(canvas, Part(all, 0.01f, 0.02f, 0.06f, 0.14f));
    PaintPatches(canvas, Part(all, 0.08f, 0, 0.60f, 0.27f));
    PaintRamps(canvas, Part(all, 0, 0.72f, 0.60f, 1));
    PaintLines(canvas, Part(all, 0.64f, 0.80f, 1, 1));
    PaintNight(canvas, Part(all, 0, 0.32f, 0.36f, 0.67f), sway);
    PaintStar(canvas, all.left + 0.49f * all.width(), all.top + 0.495f * all.height(), 1.35f * unit, motion);
    PaintDiscs(canvas, all.left + (0.80f + 0.04f * sway) * all.width(), all.top + 0.25f * all.height(), 1.5f * unit);
    const Box fade = Part(all, 0.64f, 0.66f, 1, 0.77f);
    canvas.fill(fade, [](float, float, const Color&) { return Color{0.20f, 0.75f, 0.70f}; });
    CutTransparency(canvas, fade, all.left + 0.965f * all.width(), all.top + 0.535f * all.height(), 0.8f * unit);
    return canvas.picture();
}

}  // namespace quillon::cli
