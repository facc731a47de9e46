#include "imagelib/Reduction.h"

#include <algorithm>
#include <type_traits>
#include <vector>

#include "imagelib/AdaptivePalette.h"
#include "imagelib/DiffuseBands.h"
#include "imagelib/DiffuseRows.h"
#include "imagelib/FixedPalettes.h"
#include "imagelib/NearestColor.h"
#include "imagelib/Quantizers.h"
#include "imagelib/ShortPalette.h"
#include "imagelib/SinglePixels.h"

namespace quillon::ImageLib {

namespace {

// Fewer rows than this are not worth a band's set-up, in memory least of all.
constexpr std::uint32_t kBandHeight = 16;

// Where there is no reduction: converts the pixels to floats and back, and to gray where asked.
template <class T>
void ConvertOnly(const Picture<T>& picture) {
    const auto there = [](auto channel) {
        if constexpr (std::is_same_v<T, Pixel32>)
            return channel;
        else
            return FloatFromChannel(channel);
    };
    const auto back = [](float value) {
        if constexpr (std::is_same_v<T, Pixel8>)
            return Channel8FromFloat(value);
        else if constexpr (std::is_same_v<T, Pixel15>)
            return Channel15FromFloat(value);
        else
            return value;
    };
    if (!picture.toGray && !std::is_same_v<T, Pixel15>) return;  // comes back as it was
    for (std::uint32_t y = 0; y < picture.height; ++y)
        picture.forFours(y, [&](std::byte* bytes, std::uint32_t, std::uint32_t) {
            const FourPixels four = picture.load(bytes);
            T pixels[4];
            std::memcpy(pixels, bytes, sizeof pixels);
            for (int i = 0; i < 4; ++i)
                pixels[i] = {back(there(pixels[i].alpha)), back(four.lane[1][i]), back(four.lane[2][i]),
                             back(four.lane[3][i])};
            std::memcpy(bytes, pixels, sizeof pixels);
        });
}

// Whether every pixel's alpha is exactly 1.
template <class T>
bool IsOpaque(const Picture<T>& picture) {
    int opaque = 15;
    for (std::uint32_t y = 0; y < picture.height && opaque == 15; ++y)
        picture.forFours(y, [&](const std::byte* pixels, std::uint32_t, std::uint32_t count) {
            const __m128 alpha = PixelAccess<T>::Load(pixels).lane[0];
            opaque &= _mm_movemask_ps(_mm_cmpeq_ps(alpha, _mm_set1_ps(1.0f))) | (15 << count & 15);
        });
    return opaque == 15;
}

template <class T, class Chooser>
void Diffuse(const Picture<T>& picture, const ReductionSettings& settings, const DitherKernel& kernel, Chooser& chooser,
             PackedColors<T> colors) {
    if (settings.serpentine || picture.height < kBandHeight)
        RowDiffusion(picture, kernel, chooser, colors).run(settings.serpentine);
    else
        BandDiffusion(picture, kernel, chooser, colors).run();
}

// Errors, and the amplitude of a matrix, carry colors out of their cube. An amplitude may be anything.
NearestColor::Range ExpectedColors(const ReductionSettings& settings, const DitherKernel* kernel,
                                   const OrderedMatrix* matrix) {
    if (kernel) return {-0.5f, 1.5f};
    if (matrix && settings.value > 0) return {0, 1 + std::min(settings.value, 1.0f)};
    if (matrix && settings.value < 0) return {std::max(settings.value, -1.0f), 1};
    return {0, 1};
}

template <class T>
struct PaletteReduction {
    const Picture<T>& picture;
    const ReductionSettings& settings;
    const DitherKernel* kernel;
    const OrderedMatrix* matrix;
    std::span<const Pixel32> palette;
    PackedColors<T> colors;

    template <class Search>
    void run(Search& search) const {
        FromPalette<Search, false> chooser(search, palette);
        if (kernel) {
            const auto isSolid = [](const Pixel32& entry) { return entry.alpha == 1.0f; };
            if (!std::all_of(palette.begin(), palette.end(), isSolid) || !IsOpaque(picture))
                return Diffuse(picture, settings, *kernel, chooser, colors);
            FromPalette<Search, true> opaqueChooser(search, palette);
            return Diffuse(picture, settings, *kernel, opaqueChooser, colors);
        }
        if constexpr (std::is_same_v<T, Pixel8>)
            if (!matrix) return ReduceRepeatedPixels(picture, chooser, colors);
        ReduceSinglePixels(picture, chooser, colors, matrix, settings.value);
    }
};

template <class T>
void ReduceAs(Surface<T>& surface, const ReductionSettings& settings) {
    const Picture<T> picture(surface, settings.grayscale);
    const DitherKernel* kernel = FindDitherKernel(settings.ditherIndex);
    const OrderedMatrix* matrix = FindOrderedMatrix(settings.ditherIndex);
    const std::int32_t mode = settings.mode;

    std::vector<Pixel32> palette = FixedPalette(mode);
    if (mode == 1) palette = {{1, 0, 0, 0}, {1, 1, 1, 1}};
    const bool isAdaptive = mode >= 2 && mode <= 7;
    if ((palette.empty() && !isAdaptive) || (settings.ditherIndex != 0 && !kernel && !matrix))
        return ConvertOnly(picture);
    if (isAdaptive) palette = AdaptivePalette(picture, 4u << (mode - 1));

    std::vector<typename PixelAccess<T>::Packed> packed(palette.size());
    std::transform(palette.begin(), palette.end(), packed.begin(), PixelAccess<T>::Pack);
    const PackedColors<T> colors(packed);
    if (mode == 1) {
        constexpr float kAmplitude = 0.2f;
        TwoLevels chooser(settings.value);
        if (kernel) return Diffuse(picture, settings, *kernel, chooser, colors);
        return ReduceSinglePixels(picture, chooser, colors, matrix, kAmplitude);
    }
    const PaletteReduction<T> reduction{picture, settings, kernel, matrix, palette, colors};
    if (kernel && ShortPalette::Holds(palette)) {
        const ShortPalette search(palette);
        return reduction.run(search);
    }
    NearestColor search(palette, std::uint64_t{picture.width} * picture.height,
                        ExpectedColors(settings, kernel, matrix));
    reduction.run(search);
}

}  // namespace

void Reduce(Surface<Pixel8>& surface, const ReductionSettings& settings) {
    ReduceAs(surface, settings);
}

void Reduce(Surface<Pixel15>& surface, const ReductionSettings& settings) {
    ReduceAs(surface, settings);
}

void Reduce(Surface<Pixel32>& surface, const ReductionSettings& settings) {
    ReduceAs(surface, settings);
}

}  // namespace quillon::ImageLib
