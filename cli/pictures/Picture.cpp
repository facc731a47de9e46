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

// `turn`: channel c of the result is channel (c + turn) mod 4 of the source.
template <class From, class To>
void ConvertSamples(const Picture& source, Picture& destination, int turn) {
    const auto* from = source.row<typename From::Type>(0);
    auto* to = destination.row<typename To::Type>(0);
    const std::size_t pixels = std::size_t{source.width} * source.height;
    for (std::size_t i = 0; i < pixels; ++i, from += 4, to += 4) {
        for (int channel = 0; channel < 4; ++channel) {
            to[channel] = ConvertSample<From, To>(from[(channel + turn) & 3]);
        }
    }
}

using Conversion = void (*)(const Picture&, Picture&, int);

template <class From>
constexpr Conversion kConversionsFrom[] = {ConvertSamples<From, ByteSample>, ConvertSamples<From, WordSample>,
                                           ConvertSamples<From, HostWordSample>, ConvertSamples<From, RealSample>};

constexpr const Conversion* kConversions[] = {kConversionsFrom<ByteSample>, kConversionsFrom<WordSample>,
                                              kConversionsFrom<HostWordSample>, kConversionsFrom<RealSample>};

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

Picture Convert(const Picture& picture, SampleFormat format, ChannelOrder order) {
    Picture result = Picture::Make(picture.width, picture.height, format, order);
    const int turn = picture.order == order ? 0 : order == ChannelOrder::argb ? 3 : 1;
    kConversions[static_cast<int>(picture.format)][static_cast<int>(format)](picture, result, turn);
    return result;
}

}  // namespace quillon::cli
