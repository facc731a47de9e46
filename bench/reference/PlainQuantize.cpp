#include "reference/PlainQuantize.h"

#include <cstring>
#include <sstream>
#include <string>

namespace quillon::reference {

using ImageLib::Pixel15;
using ImageLib::Pixel32;
using ImageLib::Pixel8;

namespace {

// Rows divided by '/', cells by blanks; 'x' is the current pixel.
struct Grid {
    int width;
    const char* rows;
    float divisor;
};

constexpr Grid kKernels[] = {
    {3, "0 x 7 / 3 5 1", 16},
    {4, "0 0 x 7 / 5 3 5 7 / 5 3 1 3", 48},
    {4, "0 0 x 8 / 4 2 4 8 / 4 2 1 2", 42},
    {4, "0 x 1 1 / 1 1 1 0 / 0 1 0 0", 8},
    {4, "0 0 x 8 / 4 2 4 8", 32},
    {4, "0 0 x 5 / 3 2 4 5 / 4 2 0 2", 32},
    {4, "0 0 x 4 / 3 1 2 3", 16},
    {3, "0 x 2 / 1 1 0", 4},
    {7, "0 0 0 x 0 32 0 / 12 0 26 0 30 0 16 / 0 12 0 26 0 12 0 / 5 0 12 0 12 0 5", 200},
};

constexpr Grid kMatrices[] = {
    {2, "1 3 / 4 2", 4},
    {4, "1 9 3 11 / 13 5 15 7 / 4 12 2 10 / 16 8 14 6", 17},
    {8,
     "1 33 9 41 3 35 11 43 / 49 17 57 25 51 19 59 27 / 13 45 5 37 15 47 7 39 / 61 29 53 21 63 31 55 23 / "
     "4 36 12 44 2 34 10 42 / 52 20 60 28 50 18 58 26 / 16 48 8 40 14 46 6 38 / 64 32 56 24 62 30 54 22",
     65},
};

constexpr const char* kPalettes[] = {
    "000000 0027FB 00F92C 00FCFE FF3016 FF3FFC FFFD33 FFFFFF",
    "000000 001290 008F15 009092 9B1708 9A2091 949119 B8B8B8 686868 0027FB 00F92C 00FCFE FF3016 FF3FFC FFFD33 FFFFFF",
    "000000 722640 40337F E434FE 0E5940 CCCCCC 1B9AFE BFB3FF 404C00 E46501 CCCCCC F1A6BF 1BCB01 BFCC80 8DD9BF FFFFFF",
    "000000 FFFFFF 8D3E37 72C1C8 80348B 55A049 40318D AAB95D 8B5429 D59F74 B86962 87D6DD AA5FB6 94E089 8071CC BFCE72",
    "000000 FFFFFF 883932 67B6BD 8B3F96 55A049 40318D BFCE72 8B5429 574200 B86962 505050 787878 94E089 7869C4 9F9F9F",
    "000000 00AAAA AA00AA AAAAAA",
    "000000 55FFFF FF55FF FFFFFF",
    "000000 00AA00 AA0000 AA5500",
    "000000 55FF55 FF5555 FFFF55",
    "000000 00AAAA AA0000 AAAAAA",
    "000000 55FFFF FF5555 FFFFFF",
    "000000 0000AA 00AA00 00AAAA AA0000 AA00AA AA5500 AAAAAA 555555 5555FF 55FF55 55FFFF FF5555 FF55FF FFFF55 FFFFFF",
    "000000 000000 3EB849 74D07D 5955E0 8076F1 B95E51 65DBEF DB6559 FF897D CCC35E DED087 3AA241 B766B5 CCCCCC FFFFFF",
};

// The cells as numbers over the divisor, row by row; the current pixel is 1 over it.
std::vector<float> WeightsOf(const Grid& grid) {
    std::vector<float> weights;
    std::istringstream text(grid.rows);
    for (std::string word; text >> word;)
        if (word != "/") weights.push_back((word == "x" ? 1.0f : std::stof(word)) / grid.divisor);
    return weights;
}

std::vector<Pixel32> FixedPalette(std::int32_t mode) {
    std::vector<Pixel32> palette;
    std::istringstream text(kPalettes[mode - 9]);
    const auto channel = [mode](unsigned long color, int shift) {
        const auto byte = static_cast<std::uint8_t>(color >> shift);
        return mode <= 10 ? static_cast<float>(byte) / 255.0f : ImageLib::FloatFromChannel(byte);
    };
    for (std::string word; text >> word;) {
        const unsigned long color = std::stoul(word, nullptr, 16);
        palette.push_back({1.0f, channel(color, 16), channel(color, 8), channel(color, 0)});
    }
    return palette;
}

Pixel32 Difference(const Pixel32& a, const Pixel32& b) {
    return {a.alpha - b.alpha, a.red - b.red, a.green - b.green, a.blue - b.blue};
}

void AddScaled(Pixel32& to, const Pixel32& step, float weight) {
    to.alpha += step.alpha * weight;
    to.red += step.red * weight;
    to.green += step.green * weight;
    to.blue += step.blue * weight;
}

// A reduction under way: the float picture, and how a color is chosen.
struct Pass {
    const PlainQuantize& settings;
    std::vector<Pixel32> image;
    std::vector<Pixel32> palette;  // unused at mode 1

    Pixel32& at(int x, int y) { return image[static_cast<std::size_t>(y) * settings.width + static_cast<unsigned>(x)]; }

    Pixel32 choose(const Pixel32& color) const {
        if (settings.mode == 1) return color.red > settings.value ? Pixel32{1, 1, 1, 1} : Pixel32{1, 0, 0, 0};
        float best = 1000000.0f;
        const Pixel32* chosen = &palette.front();
        for (const Pixel32& entry : palette) {
            const Pixel32 d = Difference(color, entry);
            const float distance = (d.alpha * d.alpha + d.red * d.red) + (d.green * d.green + d.blue * d.blue);
            if (distance < best) {
                best = distance;
                chosen = &entry;
            }
        }
        return *chosen;
    }

    void diffuse(const Grid& kernel) {
        const std::vector<float> weights = WeightsOf(kernel);
        const int kernelHeight = static_cast<int>(weights.size()) / kernel.width;
        int origin = 0;
        while (!(weights[static_cast<std::size_t>(origin)] > 0)) ++origin;
        const int width = static_cast<int>(settings.width);
        const int height = static_cast<int>(settings.height);
        for (int y = 0; y < height; ++y) {
            const int d = settings.serpentine && y % 2 == 1 ? -1 : 1;
            for (int i = 0; i < width; ++i) {
                const int x = d < 0 ? width - 1 - i : i;
                const Pixel32 old = at(x, y);
                at(x, y) = choose(old);
                const Pixel32 error = Difference(old, at(x, y));
                for (int r = 0; r < kernelHeight && y + r < height; ++r)
                    for (int c = r == 0 ? origin + 1 : 0; c < kernel.width; ++c) {
                        const float weight = weights[static_cast<std::size_t>(r * kernel.width + c)];
                        const int target = i + c - origin;
                        if (weight > 0 && target >= 0 && target < width)
                            AddScaled(at(x + (c - origin) * d, y + r), error, weight);
                    }
            }
        }
    }

    void order(const Grid& matrix) {
        const std::vector<float> cells = WeightsOf(matrix);
        const float amplitude = settings.mode == 1 ? 0.2f : settings.value;
        for (int y = 0; y < static_cast<int>(settings.height); ++y)
            for (int x = 0; x < static_cast<int>(settings.width); ++x) {
                const int row = y & (matrix.width - 1);
                const int column = x & (matrix.width - 1);
                const float cell = cells[static_cast<std::size_t>(row * matrix.width + column)];
                const Pixel32 p = at(x, y);
                at(x, y) = choose({cell * amplitude + p.alpha, cell * amplitude + p.red, cell * amplitude + p.green,
                                   cell * amplitude + p.blue});
            }
    }

    void run() {
        const std::int64_t k = std::int64_t{settings.dither} - 1;
        const std::int32_t mode = settings.mode;
        if (k != 0 && !(k >= 2 && k <= 10) && !(k >= 12 && k <= 14)) return;
        if (mode < 1 || mode > 21 || mode == 8) return;
        if (mode >= 2 && mode <= 7) palette = PlainAdaptivePalette(image, 4u << (mode - 1));
        if (mode >= 9) palette = FixedPalette(mode);
        if (k == 0)
            for (Pixel32& pixel : image) pixel = choose(pixel);
        else if (k <= 10)
            diffuse(kKernels[k - 2]);
        else
            order(kMatrices[k - 12]);
    }
};

Pixel32 ToFloat(const Pixel32& pixel) {
    return pixel;
}

template <class T>
Pixel32 ToFloat(const T& pixel) {
    return {ImageLib::FloatFromChannel(pixel.alpha), ImageLib::FloatFromChannel(pixel.red),
            ImageLib::FloatFromChannel(pixel.green), ImageLib::FloatFromChannel(pixel.blue)};
}

void WriteBack(Pixel32& pixel, const Pixel32& result) {
    pixel = {pixel.alpha, result.red, result.green, result.blue};
}

void WriteBack(Pixel15& pixel, const Pixel32& result) {
    pixel = {ImageLib::Channel15FromFloat(ImageLib::FloatFromChannel(pixel.alpha)),
             ImageLib::Channel15FromFloat(result.red), ImageLib::Channel15FromFloat(result.green),
             ImageLib::Channel15FromFloat(result.blue)};
}

void WriteBack(Pixel8& pixel, const Pixel32& result) {
    pixel = {ImageLib::Channel8FromFloat(ImageLib::FloatFromChannel(pixel.alpha)),
             ImageLib::Channel8FromFloat(result.red), ImageLib::Channel8FromFloat(result.green),
             ImageLib::Channel8FromFloat(result.blue)};
}

template <class T>
void RunAs(const PlainQuantize& settings, std::byte* pixels) {
    const std::size_t count = std::size_t{settings.width} * settings.height;
    Pass pass{settings, {}, {}};
    pass.image.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        T pixel;
        std::memcpy(&pixel, pixels + i * sizeof(T), sizeof(T));
        pass.image.push_back(ToFloat(pixel));
    }
    if (settings.grayscale || settings.mode == 1)
        for (Pixel32& p : pass.image) {
            const float luma = (0.0f * p.alpha + 0.2126f * p.red) + (0.7152f * p.green + 0.0722f * p.blue);
            p = {p.alpha, luma, luma, luma};
        }
    pass.run();
    for (std::size_t i = 0; i < count; ++i) {
        T pixel;
        std::memcpy(&pixel, pixels + i * sizeof(T), sizeof(T));
        WriteBack(pixel, pass.image[i]);
        std::memcpy(pixels + i * sizeof(T), &pixel, sizeof(T));
    }
}

}  // namespace

void PlainQuantize::run(std::byte* pixels) const {
    if (bitDepth == 8) RunAs<Pixel8>(*this, pixels);
    if (bitDepth == 16) RunAs<Pixel15>(*this, pixels);
    if (bitDepth == 32) RunAs<Pixel32>(*this, pixels);
}

}  // namespace quillon::reference
