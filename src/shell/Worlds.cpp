#include "shell/Worlds.h"

#include "shell/HostVersion.h"

namespace quillon {

namespace {

struct FormatDepth {
    std::uint32_t format;
    std::uint32_t bitDepth;
};

constexpr FormatDepth kFormatDepths[] = {
    {0x62677261, 8},  {0x62677278, 8},  {0x61726762, 8},  {0x62677241, 16}, {0x62677258, 16}, {0x61726742, 16},
    {0x36316561, 16}, {0x62675241, 32}, {0x62675258, 32}, {0x61724742, 32}, {0x32336561, 32},
};

std::uint32_t DepthOfFormat(std::uint32_t format) {
    for (const FormatDepth& row : kFormatDepths)
        if (row.format == format) return row.bitDepth;
    return 0;
}

template <class Pixel>
std::byte* Ask(PF_Err (*getter)(PF_EffectWorld*, PF_PixelPtr, Pixel**), PF_EffectWorld& world) {
    Pixel* pixels = nullptr;
    getter(&world, nullptr, &pixels);
    return reinterpret_cast<std::byte*>(pixels);
}

}  // namespace

WorldPixels PixelsOf(const SuiteHold<PF_PixelDataSuite1>& suite, PF_EffectWorld& world) {
    if (std::byte* pixels = Ask(suite->get_pixel_data_float, world)) return {pixels, 32};
    if (std::byte* pixels = Ask(suite->get_pixel_data16, world)) return {pixels, 16};
    if (std::byte* pixels = Ask(suite->get_pixel_data8, world)) return {pixels, 8};
    return {};
}

WorldPixels PixelsOf(PF_InData& in, PF_EffectWorld& world) {
    const RequiredSuite suite(in.pica_basicP, suites::kPixelData);
    return PixelsOf(suite, world);
}

std::uint32_t worldDepth(PF_InData& in, PF_OutData& out, PF_EffectWorld& world) {
    if (IsPremiere(in)) {
        auto format = static_cast<PrPixelFormat>(PF_PixelFormat_INVALID);
        const SuiteHold suite(in.pica_basicP, suites::kPixelFormat);
        if (suite) suite->GetPixelFormat(&world, &format);
        return DepthOfFormat(static_cast<std::uint32_t>(format));
    }
    PF_PixelFormat format = PF_PixelFormat_INVALID;
    const SuiteHold suite(in.pica_basicP, suites::kWorld);
    if (suite)
        suite->PF_GetPixelFormat(&world, &format);
    else
        ShowMessage(in, out, "Couldn't load suite.");
    return DepthOfFormat(static_cast<std::uint32_t>(format));
}

}  // namespace quillon
