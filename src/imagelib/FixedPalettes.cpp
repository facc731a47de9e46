#include "imagelib/FixedPalettes.h"

#include <iterator>

namespace quillon::ImageLib {

namespace {

enum class Scale { over255, asPixel8 };  // how a byte becomes a float; the two differ in the last place

struct Colors {
    Scale scale;
    std::uint32_t count;
    std::uint32_t colors[16];  // 0xRRGGBB
};

// clang-format off
constexpr Colors kPalettes[] = {
    /*  9 */ {Scale::over255, 8, {0x000000, 0x0027FB, 0x00F92C, 0x00FCFE, 0xFF3016, 0xFF3FFC, 0xFFFD33, 0xFFFFFF}},
    /* 10 */ {Scale::over255, 16, {0x000000, 0x001290, 0x008F15, 0x009092, 0x9B1708, 0x9A2091, 0x949119, 0xB8B8B8,
                                   0x686868, 0x0027FB, 0x00F92C, 0x00FCFE, 0xFF3016, 0xFF3FFC, 0xFFFD33, 0xFFFFFF}},
    /* 11 */ {Scale::asPixel8, 16, {0x000000, 0x722640, 0x40337F, 0xE434FE, 0x0E5940, 0xCCCCCC, 0x1B9AFE, 0xBFB3FF,
                                    0x404C00, 0xE46501, 0xCCCCCC, 0xF1A6BF, 0x1BCB01, 0xBFCC80, 0x8DD9BF, 0xFFFFFF}},
    /* 12 */ {Scale::asPixel8, 16, {0x000000, 0xFFFFFF, 0x8D3E37, 0x72C1C8, 0x80348B, 0x55A049, 0x40318D, 0xAAB95D,
                                    0x8B5429, 0xD59F74, 0xB86962, 0x87D6DD, 0xAA5FB6, 0x94E089, 0x8071CC, 0xBFCE72}},
    /* 13 */ {Scale::asPixel8, 16, {0x000000, 0xFFFFFF, 0x883932, 0x67B6BD, 0x8B3F96, 0x55A049, 0x40318D, 0xBFCE72,
                                    0x8B5429, 0x574200, 0xB86962, 0x505050, 0x787878, 0x94E089, 0x7869C4, 0x9F9F9F}},
    /* 14 */ {Scale::asPixel8, 4, {0x000000, 0x00AAAA, 0xAA00AA, 0xAAAAAA}},
    /* 15 */ {Scale::asPixel8, 4, {0x000000, 0x55FFFF, 0xFF55FF, 0xFFFFFF}},
    /* 16 */ {Scale::asPixel8, 4, {0x000000, 0x00AA00, 0xAA0000, 0xAA5500}},
    /* 17 */ {Scale::asPixel8, 4, {0x000000, 0x55FF55, 0xFF5555, 0xFFFF55}},
    /* 18 */ {Scale::asPixel8, 4, {0x000000, 0x00AAAA, 0xAA0000, 0xAAAAAA}},
    /* 19 */ {Scale::asPixel8, 4, {0x000000, 0x55FFFF, 0xFF5555, 0xFFFFFF}},
    /* 20 */ {Scale::asPixel8, 16, {0x000000, 0x0000AA, 0x00AA00, 0x00AAAA, 0xAA0000, 0xAA00AA, 0xAA5500, 0xAAAAAA,
                                    0x555555, 0x5555FF, 0x55FF55, 0x55FFFF, 0xFF5555, 0xFF55FF, 0xFFFF55, 0xFFFFFF}},
    /* 21 */ {Scale::asPixel8, 16, {0x000000, 0x000000, 0x3EB849, 0x74D07D, 0x5955E0, 0x8076F1, 0xB95E51, 0x65DBEF,
                                    0xDB6559, 0xFF897D, 0xCCC35E, 0xDED087, 0x3AA241, 0xB766B5, 0xCCCCCC, 0xFFFFFF}},
};
// clang-format on
constexpr std::int32_t kFirstPalette = 9;

float Channel(Scale scale, std::uint32_t color, int shift) {
    const auto byte = static_cast<std::uint8_t>(color >> shift);
    return scale == Scale::over255 ? static_cast<float>(byte) / 255.0f : FloatFromChannel(byte);
}

}  // namespace

std::vector<Pixel32> FixedPalette(std::int32_t mode) {
    std::vector<Pixel32> palette;
    if (mode < kFirstPalette || mode >= kFirstPalette + std::ssize(kPalettes)) return palette;
    const auto& [scale, count, colors] = kPalettes[mode - kFirstPalette];
    for (std::uint32_t i = 0; i < count; ++i)
        palette.push_back(
            {1.0f, Channel(scale, colors[i], 16), Channel(scale, colors[i], 8), Channel(scale, colors[i], 0)});
    return palette;
}

}  // namespace quillon::ImageLib
