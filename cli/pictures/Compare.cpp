#include "cli/pictures/Compare.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace quillon::cli {

namespace {

// Of the two formats the one that holds both; a word of a file and one of a host go into floats.
SampleFormat CommonFormat(SampleFormat a, SampleFormat b) {
    if (a == b) return a;
    if (a == SampleFormat::byte) return b;
    if (b == SampleFormat::byte) return a;
    return SampleFormat::real;
}

double SampleDifference(double a, double b) {
    if (a == b || (std::isnan(a) && std::isnan(b))) return 0;
    const double difference = std::fabs(a - b);
    return std::isnan(difference) ? std::numeric_limits<double>::infinity() : difference;
}

// Calls visit(pixel, channel, difference) for all samples, channels red to alpha.
template <class Sample, class Visit>
void VisitSamples(const Picture& a, const Picture& b, Visit visit) {
    const auto* left = a.row<Sample>(0);
    const auto* right = b.row<Sample>(0);
    const std::size_t pixels = std::size_t{a.width} * a.height;
    for (std::size_t i = 0; i < pixels; ++i) {
        for (std::size_t c = 0; c < 4; ++c, ++left, ++right) visit(i, c, SampleDifference(*left, *right));
    }
}

template <class Visit>
SampleFormat VisitDifferences(const Picture& a, const Picture& b, Visit visit) {
    const SampleFormat format = CommonFormat(a.format, b.format);
    const Picture left = Convert(a, format, ChannelOrder::rgba), right = Convert(b, format, ChannelOrder::rgba);
    if (format == SampleFormat::byte) VisitSamples<std::uint8_t>(left, right, visit);
    if (format == SampleFormat::word || format == SampleFormat::hostWord)
        VisitSamples<std::uint16_t>(left, right, visit);
    if (format == SampleFormat::real) VisitSamples<float>(left, right, visit);
    return format;
}

}  // namespace

Difference Compare(const Picture& a, const Picture& b, double limit) {
    Difference result;
    result.pixels = std::uint64_t{a.width} * a.height;
    double pixelLargest = 0;
    result.format = VisitDifferences(a, b, [&](std::size_t, std::size_t channel, double difference) {
        result.largest[channel] = std::max(result.largest[channel], difference);
        result.mean[channel] += difference / static_cast<double>(result.pixels);
        pixelLargest = std::max(pixelLargest, difference);
        if (channel != 3) return;
        result.differentPixels += pixelLargest > 0;
        result.failedPixels += pixelLargest > limit;
        pixelLargest = 0;
    });
    return result;
}

Picture DrawDifference(const Picture& a, const Picture& b) {
    const Difference found = Compare(a, b, 0);
    const double most = *std::ranges::max_element(found.largest);
    Picture drawn = Picture::Make(a.width, a.height, SampleFormat::byte, ChannelOrder::argb);
    auto* const bytes = drawn.row<std::uint8_t>(0);
    VisitDifferences(a, b, [&](std::size_t pixel, std::size_t channel, double difference) {
        if (channel == 3) {
            // Where only alpha differs there is something to see, too.
            bytes[4 * pixel] = 255;
            for (std::size_t c = 1; c < 4; ++c)
                if (difference > 0) bytes[4 * pixel + c] = std::max<std::uint8_t>(bytes[4 * pixel + c], 64);
        } else if (difference > 0) {
            const double share = std::isfinite(most) ? difference / most : 1;
            bytes[4 * pixel + channel + 1] = static_cast<std::uint8_t>(std::ceil(share * 255));
        }
    });
    return drawn;
}

}  // namespace quillon::cli
