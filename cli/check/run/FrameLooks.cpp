#include "cli/check/run/FrameLooks.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "cli/pictures/PictureSource.h"

namespace quillon::cli {

namespace {

constexpr const char* kChannels[] = {"red", "green", "blue", "alpha"};
constexpr int kAlpha = 3;

Picture FloatsOf(const host::World& frame) {
    return Convert(PictureOf(frame), SampleFormat::real, ChannelOrder::rgba);
}

// Of the pixels for which isBad(pixel) gives a channel's number, and not -1: the first one, and how many more there
// are.
template <class IsBad>
std::string WordsOfPixels(const Picture& picture, const IsBad& isBad) {
    std::string first;
    std::size_t count = 0;
    for (std::uint32_t y = 0; y < picture.height; ++y) {
        const auto* const row = picture.row<float>(y);
        for (std::uint32_t x = 0; x < picture.width; ++x) {
            const int channel = isBad(row + 4 * x);
            if (channel < 0) continue;
            if (count++ > 0) continue;
            const float value = row[4 * x + static_cast<std::uint32_t>(channel)];
            // The sign of a NaN says nothing, and depends on the driver.
            first = fmt::format("{} is {} at {}, {}", kChannels[channel],
                                std::isnan(value) ? "NaN" : fmt::format("{:.4g}", value), x, y);
        }
    }
    if (count < 2) return first;
    return fmt::format("{}, and {} further pixel{} like it", first, count - 1, count == 2 ? " is" : "s are");
}

// Mean colors of blocks, multiplied by alpha, within 0 to 1.
constexpr std::uint32_t kBlock = 8;

std::array<double, 4> MeanOfBlock(const Picture& picture, std::uint32_t left, std::uint32_t top) {
    std::array<double, 4> sum = {};
    const std::uint32_t right = std::min(left + kBlock, picture.width), bottom = std::min(top + kBlock, picture.height);
    for (std::uint32_t y = top; y < bottom; ++y) {
        for (std::uint32_t x = left; x < right; ++x) {
            const float* const pixel = picture.row<float>(y) + 4 * x;
            const double alpha = std::clamp(pixel[3], 0.0f, 1.0f);
            for (std::size_t i = 0; i < 3; ++i) sum[i] += std::clamp(pixel[i], 0.0f, 1.0f) * alpha;
            sum[3] += alpha;
        }
    }
    for (double& channel : sum) channel /= static_cast<double>((right - left) * (bottom - top));
    return sum;
}

// Between depths a block may differ by this much: 8 bits round, shaders amplify that, and noise falls in another way.
constexpr double kMostDifference = 12.0 / 255;

}  // namespace

std::string WordsOfBadNumbers(const host::World& frame) {
    return WordsOfPixels(FloatsOf(frame), [](const float* pixel) {
        const float* const bad = std::find_if_not(pixel, pixel + 4, [](float number) { return std::isfinite(number); });
        return bad == pixel + 4 ? -1 : static_cast<int>(bad - pixel);
    });
}

std::string WordsOfBadAlpha(const host::World& frame) {
    constexpr float kRounding = 1e-3f;
    return WordsOfPixels(FloatsOf(frame), [](const float* pixel) {
        return pixel[3] < -kRounding || pixel[3] > 1 + kRounding ? kAlpha : -1;
    });
}

std::string WordsOfOneColor(const host::World& frame) {
    const Picture picture = FloatsOf(frame);
    if (picture.width * picture.height < 2) return "";
    const auto* const first = picture.row<float>(0);
    const auto* const end = first + std::size_t{4} * picture.width * picture.height;
    bool isTransparent = true, isOneColor = true;
    for (const float* pixel = first; pixel != end; pixel += 4) {
        isTransparent = isTransparent && pixel[3] == 0;
        isOneColor = isOneColor && std::equal(pixel, pixel + 4, first);
    }
    if (isTransparent) return "the frame is transparent everywhere";
    if (!isOneColor) return "";
    return fmt::format("the frame is {:.4g}, {:.4g}, {:.4g} with alpha {:.4g} everywhere", first[0], first[1], first[2],
                       first[3]);
}

bool AreNearlyEqual(const host::World& frame, const host::World& other) {
    constexpr float kFiltering = 1.0f / 1024;
    if (frame.width() != other.width() || frame.height() != other.height()) return false;
    const Picture one = FloatsOf(frame), two = FloatsOf(other);
    const auto* const first = one.row<float>(0);
    return std::equal(first, first + one.pixels.size() / sizeof(float), two.row<float>(0),
                      [](float a, float b) { return std::abs(a - b) <= kFiltering; });
}

std::string WordsOfDifference(const host::World& frame, const host::World& other) {
    if (frame.width() != other.width() || frame.height() != other.height())
        return fmt::format("the frame has {}x{} pixels at {} bits and {}x{} at {}", frame.width(), frame.height(),
                           frame.bitDepth(), other.width(), other.height(), other.bitDepth());
    const Picture one = FloatsOf(frame), two = FloatsOf(other);
    double most = kMostDifference;
    std::string words;
    for (std::uint32_t y = 0; y < one.height; y += kBlock) {
        for (std::uint32_t x = 0; x < one.width; x += kBlock) {
            const auto mean = MeanOfBlock(one, x, y), otherMean = MeanOfBlock(two, x, y);
            for (std::size_t i = 0; i < 4; ++i) {
                if (std::abs(mean[i] - otherMean[i]) <= most) continue;
                most = std::abs(mean[i] - otherMean[i]);
                words = fmt::format("around {}, {} {} is {:.3f} at {} bits and {:.3f} at {}", x, y, kChannels[i],
                                    mean[i], frame.bitDepth(), otherMean[i], other.bitDepth());
            }
        }
    }
    return words;
}

}  // namespace quillon::cli
