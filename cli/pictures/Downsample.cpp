#include "cli/pictures/Downsample.h"

#include <algorithm>
#include <array>

namespace quillon::cli {

namespace {

using Mean = std::array<float, 4>;

// The picture is of floats, A, R, G, B.
Mean MeanOf(const Picture& picture, std::uint32_t left, std::uint32_t top, std::uint32_t n) {
    const std::uint32_t right = std::min(picture.width, left + n), bottom = std::min(picture.height, top + n);
    double alphas = 0, count = 0;
    std::array<double, 3> weighed{}, plain{};
    for (std::uint32_t y = top; y < bottom; ++y) {
        for (std::uint32_t x = left; x < right; ++x) {
            const float* const pixel = picture.row<float>(y) + std::size_t{4} * x;
            alphas += pixel[0];
            count += 1;
            for (std::size_t i = 0; i < 3; ++i) {
                weighed[i] += double{pixel[0]} * pixel[i + 1];
                plain[i] += pixel[i + 1];
            }
        }
    }
    Mean mean{static_cast<float>(alphas / count)};
    for (std::size_t i = 0; i < 3; ++i)
        mean[i + 1] = static_cast<float>(alphas > 0 ? weighed[i] / alphas : plain[i] / count);
    return mean;
}

}  // namespace

Picture Downsample(const Picture& picture, std::uint32_t n) {
    const Picture floats = Convert(picture, SampleFormat::real, ChannelOrder::argb);
    const auto smaller = [n](std::uint32_t side) { return side / n + (side % n != 0); };
    Picture result =
        Picture::Make(smaller(picture.width), smaller(picture.height), SampleFormat::real, ChannelOrder::argb);
    for (std::uint32_t y = 0; y < result.height; ++y) {
        float* pixel = result.row<float>(y);
        for (std::uint32_t x = 0; x < result.width; ++x, pixel += 4)
            std::ranges::copy(MeanOf(floats, x * n, y * n, n), pixel);
    }
    return Convert(result, picture.format, picture.order);
}

}  // namespace quillon::cli
