// Planted once: a conversion to whole numbers that takes NaN for full scale.

#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "Effects.h"
#include "Ground.h"
#include "Tool.h"
#include "support/EngineTest.h"

namespace quillon::prove {

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity(), kLargest = std::numeric_limits<float>::max();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr std::array kExtremes = {
    kNaN,
    -kNaN,
    std::bit_cast<float>(0x7F800001u),
    std::bit_cast<float>(0xFFFFFFFFu),
    kInfinity,
    -kInfinity,
    kLargest,
    -kLargest,
    1e-45f,
    -1e-45f,
    1.1754942e-38f,
    1.1754944e-38f,
    -0.0f,
    0.0f,
    2.0e-8f,
    65504.0f,
    65519.0f,
    65520.0f,
    -65520.0f,
    0.5f,
    1.0000001f,
    -1e-7f,
};
constexpr std::size_t kRowPixels = kExtremes.size();

// What becomes of a number. Drivers may take subnormal ones for 0, and lose the sign of 0.
using Rule = float (*)(float);
float Kept(float value) {
    return std::fpclassify(value) == FP_SUBNORMAL ? 0 : value;
}
float AsHalf(float value) {
    if (std::abs(value) >= 65520) return std::copysign(kInfinity, value);
    if (std::abs(value) < 0x1p-25f) return 0;
    return value == 65519 ? 65504 : Kept(value);
}
float Cut(float value) {
    return value > 0 ? std::min(value, 1.0f) : 0;
}

bool IsAs(float value, float wanted, float tolerance) {
    if (std::isnan(wanted)) return std::isnan(value);
    return Kept(value) == Kept(wanted) || std::abs(value - wanted) <= tolerance;
}

struct Way {
    const char* name;
    const char* file;
    const char* options;
    Rule rule;
    float tolerance;  // of what is neither cut nor an extreme: the step of whole numbers
    bool keepsColorBesideAlpha;
};
constexpr Way kWays[] = {
    {"raw", "", "", Kept, 0, true},
    {"EXR of floats", "way.exr", "", Kept, 0, false},
    {"EXR of half floats", "way.exr", "--exr half", AsHalf, 0.001f, false},
    {"TIFF", "way.tif", "", Kept, 0, true},
    {"PNG", "way.png", "", Cut, 1.0f / 65535, true},
};

std::vector<float> Floats(const std::string& bytes) {
    std::vector<float> floats(bytes.size() / sizeof(float));
    std::memcpy(floats.data(), bytes.data(), floats.size() * sizeof(float));
    return floats;
}

// The first row has the extremes as colors of opaque pixels, the second one as alpha.
std::string Input(Rule rule) {
    std::vector<float> samples;
    for (const float extreme : kExtremes)
        samples.insert(samples.end(), {1, rule(extreme), rule(extreme), rule(extreme)});
    for (const float extreme : kExtremes) samples.insert(samples.end(), {extreme, 0.5f, 0.5f, 0.5f});
    return {reinterpret_cast<const char*>(samples.data()), samples.size() * sizeof(float)};
}

void AddEffect(const Tool& tool, const std::string& name, const std::string& more) {
    std::filesystem::create_directory(tool.pathOf(name));
    tool.write(name + "/config.xml", test::kConfig);
    tool.write(name + "/copy.frag", test::kCopyFragment);
    tool.write(name + "/fx.js", test::CopyScript(true) +
                                    "var copied = draw; draw = function () { var input = QL_getSequenceTexture();\n"
                                    "  QL_setTextureParam(input, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);\n"
                                    "  QL_setTextureParam(input, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST); copied(); " +
                                    more + " };\n");
}

}  // namespace

std::string Extremes(bool) {
    const Tool tool;
    AddEffect(tool, "copy", "");
    tool.write("in.argb", Input([](float value) { return value; }));
    tool.write("cut.argb", Input(Cut));
    const std::string raw = "-i in.argb --depth 32 --size " + std::to_string(kRowPixels) + "x2 ";
    int samples = 0;
    for (const Way& way : kWays) {
        NowAt(way.name);
        if (*way.file != '\0') {
            tool.runWell("render copy " + raw + way.options + " -o " + way.file);
            tool.runWell(std::string("render copy --depth 32 -o out.argb -i ") + way.file);
        } else {
            tool.runWell("render copy " + raw + "-o out.argb");
        }
        const std::vector<float> made = Floats(tool.read("out.argb"));
        Require(made.size() == 8 * kRowPixels, std::string("no picture: ") + way.name);
        const auto require = [&](std::size_t at, float from) {
            ++samples;
            Require(IsAs(made[at], way.rule(from), way.tolerance),
                    std::string(way.name) + ": " + std::to_string(from) + " (" +
                        std::to_string(std::bit_cast<std::uint32_t>(from)) + ") becomes " + std::to_string(made[at]));
        };
        for (std::size_t x = 0; x < kRowPixels; ++x)
            for (std::size_t channel = 0; channel < 4; ++channel) {
                require(4 * x + channel, channel == 0 ? 1 : kExtremes[x]);
                if (channel == 0 || way.keepsColorBesideAlpha)
                    require(4 * (kRowPixels + x) + channel, channel == 0 ? kExtremes[x] : 0.5f);
            }
    }
    // Whole numbers of the host.
    tool.runWell("render copy " + raw + " -o way.exr");
    for (const int depth : {8, 16}) {
        tool.runWell("render copy --no-alpha -i way.exr -o out.argb --depth " + std::to_string(depth));
        const std::string made = tool.read("out.argb");
        for (std::size_t x = 0; x < kRowPixels; ++x) {
            const auto* const pixel =
                reinterpret_cast<const std::uint8_t*>(made.data()) + x * static_cast<std::size_t>(depth) / 2;
            const float value =
                depth == 8 ? static_cast<float>(pixel[1]) / 255 : static_cast<float>(pixel[2] + 256 * pixel[3]) / 32768;
            Require(
                IsAs(value, Cut(kExtremes[x]), 1.0f / 255),
                std::to_string(depth) + " bits: " + std::to_string(kExtremes[x]) + " becomes " + std::to_string(value));
            ++samples;
        }
    }
    // Error diffusion takes what is no number along, and a palette is chosen from all pixels; else ordinary pixels are
    // as in a picture that was cut before. Alpha stays.
    const std::string cut = "-i cut" + raw.substr(raw.find('.'));
    for (int mode = 1; mode <= 21; ++mode)
        for (const int dither : {1, 3, 7, 14}) {
            const std::string what = "mode " + std::to_string(mode) + ", dither " + std::to_string(dither);
            NowAt(what);
            AddEffect(tool, "reduce",
                      "var surface = QL_textureToSurface(input); QL_surfaceQuantize(surface, false, " +
                          std::to_string(mode) + ", " + std::to_string(dither) +
                          ", 0.5, true); QL_surfaceCopyTo(surface, QL_getSequenceRT(), true); QL_release(surface);");
            tool.runWell("render reduce " + raw + "-o out.argb");
            tool.runWell("render reduce " + cut + "-o wanted.argb");
            const std::vector<float> made = Floats(tool.read("out.argb")), wanted = Floats(tool.read("wanted.argb")),
                                     input = Floats(tool.read("in.argb"));
            Require(made.size() == 8 * kRowPixels && wanted.size() == made.size(), "no picture: " + what);
            for (std::size_t at = 0; at < made.size() && mode != 8; ++at, ++samples) {
                const bool isAlpha = at % 4 == 0, isAlone = (mode == 1 || mode > 8) && (dither == 1 || dither == 14);
                const bool isOrdinary = input[at] >= 0 && input[at] <= 1;
                Require(isAlpha                 ? IsAs(made[at], input[at], 0)
                        : isOrdinary && isAlone ? made[at] == wanted[at]
                                                : made[at] >= 0 && made[at] <= 1,
                        what + ": sample " + std::to_string(at) + " is " + std::to_string(made[at]));
            }
        }
    return std::to_string(samples) + " samples";
}

}  // namespace quillon::prove
