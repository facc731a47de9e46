// Measures, at 1920 by 1080 on one thread, each beside the plain reference and beside a
// memory copy of the same picture, in the same run:
//
//   quantize/BITS/mode MODE/dither DITHER   SurfaceQuantize
//   palette/COLORS                         only building the adaptive palette, 8 bits
//   growth/...                              times as multiples of each other: pixels, and palette entries
//   memory/mode MODE, SIZE                  the most bytes that are allocated at once, at any depth and dither
//
// With arguments, only what begins with one of them. The results of both sides are compared byte for byte. The picture
// is like an opaque photograph: slow gradients, a few edges, and grain. A time is processor time, which other programs
// disturb less, and the smallest of its rounds.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "HeapUse.h"
#include "imagelib/AdaptivePalette.h"
#include "imagelib/Quantize.h"
#include "imagelib/Surface.h"
#include "reference/PlainQuantize.h"

namespace quillon::bench {

namespace {

using Bytes = std::vector<std::byte>;

struct Way {
    const char* name;
    std::int32_t dither;
    bool serpentine;
};
constexpr Way kWays[] = {{"1", 1, false},           {"3", 3, false},   {"15", 15, false},
                         {"3 serpentine", 3, true}, {"11", 11, false}, {"11 serpentine", 11, true}};

// The least factors over the plain implementation at 8 bits, by way; half of them at 16 and 32.
struct Aims {
    std::int32_t mode;
    double factors[std::size(kWays)];
};
constexpr Aims kAims[] = {{1, {20, 6, 20, 2.5, 6, 2.5}},
                          {4, {5, 4, 5, 2.5, 4, 2.5}},
                          {7, {20, 9, 16, 7, 9, 7}},
                          {10, {10, 3.5, 7, 1.7, 3.5, 1.7}},
                          {20, {10, 3.5, 7, 1.7, 3.5, 1.7}}};

// Black and white without diffusion takes as long at 32 bits as a copy of the picture, and no code is faster than the
// memory; the plain implementation is at five times that.
constexpr double kMemoryBoundAim = 4;

bool IsMemoryBound(std::uint32_t bits, std::int32_t mode, std::uint32_t dither) {
    return bits == 32 && mode == 1 && (dither == 1 || dither == 15);
}

std::vector<std::string> wantedNames;

bool IsWanted(const std::string& name) {
    return wantedNames.empty() || std::any_of(wantedNames.begin(), wantedNames.end(),
                                              [&](const std::string& wanted) { return name.starts_with(wanted); });
}

template <class Work>
double Milliseconds(Work work) {
    const std::clock_t start = std::clock();
    work();
    return 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

Bytes MakePicture(std::uint32_t width, std::uint32_t height, std::uint32_t bits) {
    std::mt19937 random(7);
    Bytes picture(std::size_t{width} * height * bits / 2);
    std::byte* to = picture.data();
    for (std::uint32_t y = 0; y < height; ++y)
        for (std::uint32_t x = 0; x < width; ++x) {
            const float u = static_cast<float>(x) / static_cast<float>(width);
            const float v = static_cast<float>(y) / static_cast<float>(height);
            const float hill = v > 0.55f + 0.1f * std::sin(u * 9) ? 0.55f : 1.0f;
            const float shade = hill * (0.75f + 0.25f * std::sin(u * 5 + v * 3));
            const float grain = (static_cast<float>(random() >> 8) / static_cast<float>(1 << 24) - 0.5f) * 0.04f;
            const float tint[4] = {1, 0.35f + 0.5f * v, 0.45f + 0.2f * std::sin(u * 7), 0.9f - 0.6f * v * u};
            for (int lane = 0; lane < 4; ++lane, to += bits / 8) {
                const float value = lane == 0 ? 1.0f : std::clamp(tint[lane] * shade + grain, 0.0f, 1.0f);
                const auto byte = static_cast<std::uint8_t>(value * 255 + 0.5f);
                const auto word = static_cast<std::uint16_t>(value * 32768 + 0.5f);
                const void* from = bits == 8 ? static_cast<const void*>(&byte) : bits == 16 ? &word : nullptr;
                std::memcpy(to, from ? from : &value, bits / 8);
            }
        }
    return picture;
}

// One quantize of a copy of the picture; the result stays in `surface`.
double Measure(Surface& surface, const Bytes& picture, const reference::PlainQuantize& s, int rounds) {
    double best = std::numeric_limits<double>::max();
    for (int round = 0; round < rounds; ++round) {
        surface.init(s.width, s.height, s.bitDepth, true);
        surface.pixels = picture;
        best = std::min(best, Milliseconds([&] {
                            SurfaceQuantize(surface, s.mode, s.dither, s.value, s.grayscale, s.serpentine);
                        }));
    }
    return best;
}

bool Compare(std::uint32_t bits) {
    const Bytes picture = MakePicture(1920, 1080, bits);
    Bytes expected = picture;
    double copy = std::numeric_limits<double>::max();
    for (int round = 0; round < 10; ++round)
        copy = std::min(copy, Milliseconds([&] { std::memcpy(expected.data(), picture.data(), picture.size()); }));
    bool equal = true;
    for (const Aims& aims : kAims)
        for (std::size_t way = 0; way < std::size(kWays); ++way) {
            const reference::PlainQuantize settings{
                1920, 1080, bits, aims.mode, kWays[way].dither, 0.5f, false, kWays[way].serpentine};
            const std::string name = "quantize/" + std::to_string(bits) + "/mode " + std::to_string(aims.mode) +
                                     "/dither " + kWays[way].name;
            if (!IsWanted(name)) continue;
            Surface surface;
            double time = std::numeric_limits<double>::max();
            double plain = time;
            for (int round = 0; round < 3; ++round) {
                time = std::min(time, Measure(surface, picture, settings, 3));
                expected = picture;
                plain = std::min(plain, Milliseconds([&] { settings.run(expected.data()); }));
            }
            const double aim = IsMemoryBound(bits, aims.mode, kWays[way].dither)
                                   ? kMemoryBoundAim
                                   : aims.factors[way] / (bits == 8 ? 1 : 2);
            std::printf("%s: %.1f ms, %.1f copies, %.1f times the plain one (aim %.2f)%s\n", name.c_str(), time,
                        time / copy, plain / time, aim, plain / time < aim ? " BELOW" : "");
            std::fflush(stdout);
            if (surface.pixels == expected) continue;
            std::printf("  the two differ\n");
            equal = false;
        }
    return equal;
}

bool ComparePalettes() {
    Bytes picture = MakePicture(1920, 1080, 8);
    const ImageLib::Surface<ImageLib::Pixel8> view(reinterpret_cast<ImageLib::Pixel8*>(picture.data()), 1920, 1080, 0);
    std::vector<ImageLib::Pixel32> image;
    for (std::size_t i = 0; i < picture.size(); i += 4) {
        const auto channel = [&](std::size_t lane) {
            return ImageLib::FloatFromChannel(static_cast<std::uint8_t>(picture[i + lane]));
        };
        image.push_back({channel(0), channel(1), channel(2), channel(3)});
    }
    bool equal = true;
    for (const std::uint32_t colors : {8u, 32u, 256u}) {
        std::vector<ImageLib::Pixel32> palette, expected;
        double time = std::numeric_limits<double>::max();
        double plain = time;
        for (int round = 0; round < 5; ++round) {
            time = std::min(time, Milliseconds([&] {
                                palette = ImageLib::AdaptivePalette(ImageLib::Picture(view, false), colors);
                            }));
            plain = std::min(plain, Milliseconds([&] { expected = reference::PlainAdaptivePalette(image, colors); }));
        }
        std::printf("palette/%u: %.1f ms, %.1f times the plain one (aim 4)%s\n", colors, time, plain / time,
                    plain / time < 4 ? " BELOW" : "");
        equal = equal && std::memcmp(palette.data(), expected.data(), colors * sizeof(palette[0])) == 0;
    }
    return equal;
}

void Growth() {
    const auto time = [](std::uint32_t width, std::uint32_t height, std::int32_t mode, std::int32_t dither) {
        Surface surface;
        return Measure(surface, MakePicture(width, height, 8), {width, height, 8, mode, dither, 0.5f, false, false}, 3);
    };
    for (const std::int32_t dither : {1, 3, 15}) {
        std::printf("growth/dither %d: four times the pixels", dither);
        for (const std::int32_t mode : {1, 4, 7, 10})
            std::printf(", mode %d %.2f", mode, time(1920, 1080, mode, dither) / time(960, 540, mode, dither));
        std::printf(" (aim 4.4); 8 to 256 entries %.2f (aim 2.5)\n",
                    time(1920, 1080, 7, dither) / time(1920, 1080, 2, dither));
    }
}

// A float picture and 64 KiB, and for adaptive palettes what the octree of the plain implementation takes and a picture
// of bytes. Small pictures leave the least room.
bool MeasureMemory(std::int32_t mode, std::uint32_t size) {
    const double pixels = static_cast<double>(size) * size;
    double most = 0;
    double aim = pixels * 16 + 65536;
    if (mode >= 2 && mode <= 7) {
        const reference::PlainQuantize settings{size, size, 8, mode, 1, 0.5f, false, false};
        Bytes picture = MakePicture(size, size, 8);
        const HeapUse plain;
        settings.run(picture.data());
        aim = static_cast<double>(plain.peak()) + pixels * 4 + 65536;
    }
    for (const std::uint32_t bits : {8u, 16u, 32u})
        for (const Way& way : kWays) {
            Surface surface;
            surface.init(size, size, bits, true);
            surface.pixels = MakePicture(size, size, bits);
            const HeapUse own;
            SurfaceQuantize(surface, mode, way.dither, 0.5f, false, way.serpentine);
            most = std::max(most, static_cast<double>(own.peak()));
        }
    std::printf("memory/mode %d, %u by %u: up to %.2f bytes a pixel (aim %.2f)%s\n", mode, size, size, most / pixels,
                aim / pixels, most > aim ? " ABOVE" : "");
    return most <= aim;
}

}  // namespace

}  // namespace quillon::bench

int main(int argc, char** argv) {
    using namespace quillon::bench;
    wantedNames.assign(argv + 1, argv + argc);
    bool equal = true;
    for (const std::uint32_t bits : {8u, 16u, 32u}) equal = Compare(bits) && equal;
    if (IsWanted("palette")) equal = ComparePalettes() && equal;
    if (IsWanted("growth")) Growth();
    bool fits = true;
    if (IsWanted("memory"))
        for (const Aims& aims : kAims)
            for (const std::uint32_t size : {8u, 170u, 720u}) fits = MeasureMemory(aims.mode, size) && fits;
    return equal && fits ? 0 : 1;
}
