#include "cli/pictures/Picture.h"

#include <type_traits>

namespace quillon::cli {

namespace {

struct ByteSample {
    using Type = std::uint8_t;
    static constexpr double kFullScale = 255;
};
struct WordSample {
    using Type = std::uint16_t;
    static constexpr double kFullScale = 65535;
};
struct HostWordSample {
    using Type = std::uint16_t;
    static constexpr double kFullScale = 32768;
};
struct RealSample {
    using Type = float;
    static constexpr double kFullScale = 1;
};

template <class From, class To>
typename To::Type ConvertSample(typename From::Type value) {
    if constexpr (std::is_same_v<From, To>) return value;
    const double scaled = value / From::kFullScale;
    if constexpr (std::is_same_v<To, RealSample>) return static_cast<float>(scaled);
    if (!(scaled > 0)) return 0;
    if (scaled >= 1) return static_cast<typename To::Type>(To::kFullScale);
    return static_cast<typename To::Type>(scaled * To::kFullScale + 0.5);
}

// What every sample of a format becomes, where that has few enough values.
template <class From, class To>
const std::vector<typename To::Type>& TableOfSamples() {
    static const auto kTable = [] {
        std::vector<typename To::Type> table(std::size_t{1} << (8 * sizeof(typename From::Type)));
        for (std::size_t i = 0; i < table.size(); ++i)
            table[i] = ConvertSample<From, To>(static_cast<typename From::Type>(i));
        return table;
    }();
    return kTable;
}

// `turn`: channel c of the result is channel (c + turn) mod 4 of the source.
template <class From, class To>
void ConvertSamples(const std::byte* source, std::byte* destination, std::size_t pixels, int turn) {
    const auto* from = reinterpret_cast<const typename From::Type*>(source);
    auto* to = reinterpret_cast<typename To::Type*>(destination);
    const auto convertAll = [&](const auto& convert) {
        for (std::size_t i = 0; i < pixels; ++i, from += 4, to += 4) {
            for (int channel = 0; channel < 4; ++channel) to[channel] = convert(from[(channel + turn) & 3]);
        }
    };
    if constexpr (std::is_same_v<From, To>) {
        convertAll([](auto value) { return value; });
    } else if constexpr (std::is_same_v<From, RealSample>) {
        convertAll(ConvertSample<From, To>);
    } else {
        const auto* const table = TableOfSamples<From, To>().data();
        convertAll([table](auto value) { return table[value]; });
    }
}

using Conversion = void (*)(const std::byte*, std::byte*, std::size_t, int);

template <class From>
constexpr Conversion kConversionsFrom[] = {ConvertSamples<From, ByteSample>, ConvertSamples<From, WordSample>,
                                           ConvertSamples<From, HostWordSample>, ConvertSamples<From, RealSample>};

constexpr const Conversion* kConversions[] = {kConversionsFrom<ByteSample>, kConversionsFrom<WordSample>,
                                              kConversionsFrom<HostWordSample>, kConversionsFrom<RealSample>};

template <class Sample>
void UnpremultiplySamples(Picture& picture, float fullScale) {
    auto* pixel = picture.row<Sample>(0);
    for (std::size_t i = 0; i < std::size_t{picture.width} * picture.height; ++i, pixel += 4) {
        const auto alpha = static_cast<float>(pixel[3]) / fullScale;
        if (!(alpha > 0) || alpha == 1) continue;
        for (int c = 0; c < 3; ++c) {
            const float color = static_cast<float>(pixel[c]) / alpha;
            // Whole numbers are rounded and end at full scale.
            pixel[c] =
                fullScale == 1 ? static_cast<Sample>(color) : static_cast<Sample>(std::min(color + 0.5f, fullScale));
        }
    }
}

}  // namespace

Picture Picture::Make(std::uint32_t width, std::uint32_t height, SampleFormat format, ChannelOrder order) {
    Picture picture{width, height, format, order, {}};
    picture.pixels.resize(picture.rowBytes() * height);
    return picture;
}

std::size_t Picture::rowBytes() const {
    return std::size_t{width} * 4 * SampleBytes(format);
}

std::size_t SampleBytes(SampleFormat format) {
    return BitDepth(format) / 8;
}

std::uint32_t BitDepth(SampleFormat format) {
    constexpr std::uint32_t kBits[] = {8, 16, 16, 32};
    return kBits[static_cast<int>(format)];
}

SampleFormat HostFormat(std::uint32_t bitDepth) {
    return bitDepth == 8 ? SampleFormat::byte : bitDepth == 16 ? SampleFormat::hostWord : SampleFormat::real;
}

void ConvertRow(const Picture& picture, std::uint32_t y, SampleFormat format, ChannelOrder order, std::byte* row) {
    const int turn = picture.order == order ? 0 : order == ChannelOrder::argb ? 3 : 1;
    kConversions[static_cast<int>(picture.format)][static_cast<int>(format)](picture.row<std::byte>(y), row,
                                                                             picture.width, turn);
}

Picture Convert(const Picture& picture, SampleFormat format, ChannelOrder order) {
    Picture result = Picture::Make(picture.width, picture.height, format, order);
    for (std::uint32_t y = 0; y < picture.height; ++y) ConvertRow(picture, y, format, order, result.row<std::byte>(y));
    return result;
}

void Unpremultiply(Picture& picture) {
    if (picture.format == SampleFormat::byte) UnpremultiplySamples<std::uint8_t>(picture, 255);
    if (picture.format == SampleFormat::word) UnpremultiplySamples<std::uint16_t>(picture, 65535);
    if (picture.format == SampleFormat::real) UnpremultiplySamples<float>(picture, 1);
}

}  // namespace quillon::cli
