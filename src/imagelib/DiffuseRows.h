#pragma once

#include <algorithm>
#include <vector>

#include "imagelib/DitherKernels.h"
#include "imagelib/Picture.h"
#include "imagelib/Quantizers.h"

namespace quillon::ImageLib {

// Error diffusion one row after the other; with `serpentine` odd rows run from right to left and the kernel is
// mirrored there. Of the float picture only the rows that the kernel spans are kept: a row's colors first, then in
// their place the errors. A pixel adds up what the earlier ones would have given it, in the order in which they would.
template <class T, class Chooser>
class RowDiffusion {
public:
    // All four outlive it. `entries` are the chooser's entries in the form of the picture's pixels.
    RowDiffusion(const Picture<T>& reduced, const DitherKernel& weights, Chooser& chosen, PackedColors<T> entries)
        : picture(reduced),
          kernel(weights),
          chooser(chosen),
          colors(entries),
          rowFloats((picture.width + 2 * kPadding) * kLanes),
          kept(std::min<std::size_t>(static_cast<std::size_t>(kernel.height), picture.height)),
          rows(kept * rowFloats) {
        const int origin = kernel.origin();
        for (int distance = 1; distance <= kOwnReach; ++distance)
            if (origin + distance < kernel.width) ownWeights[distance - 1] = kernel.weight(0, origin + distance);
    }

    // Reduces the whole picture in place. Once.
    void run(bool serpentine) {
        for (std::uint32_t y = 0; y < picture.height; ++y) {
            unpack(y);
            receive(y, serpentine);
            scan(y, serpentine && y % 2 == 1 ? -1 : 1);
        }
    }

private:
    using One = typename Chooser::One;
    static constexpr std::size_t kLanes = sizeof(One) / sizeof(float);  // NOLINT(bugprone-sizeof-expression): 1 or more
    static constexpr std::size_t kPadding = DitherKernel::kMaxWidth + 4;  // zeros at both ends, and room for a vector
    static constexpr int kOwnReach = 2;                                   // how far kernels reach in their own row

    struct Tap {
        const float* from;
        __m128 weight;
    };

    float* line(std::uint32_t y) { return rows.data() + y % kept * rowFloats + kPadding * kLanes; }

    void unpack(std::uint32_t y) {
        float* to = line(y);
        picture.forFours(y, [&](const std::byte* pixels, std::uint32_t x, std::uint32_t count) {
            float four[4 * kLanes];
            Chooser::Unpack(picture.load(pixels), four);
            std::copy_n(four, count * kLanes, to + x * kLanes);
        });
    }

    // Adds the errors of the rows above.
    void receive(std::uint32_t y, bool serpentine) {
        Tap taps[DitherKernel::kMaxHeight * DitherKernel::kMaxWidth];
        std::size_t count = 0;
        for (int r = std::min(kernel.height - 1, static_cast<int>(std::min(y, 8u))); r > 0; --r) {
            const std::uint32_t above = y - static_cast<std::uint32_t>(r);
            const int direction = serpentine && above % 2 == 1 ? -1 : 1;
            for (int c = kernel.width - 1; c >= 0; --c) {
                if (kernel.cells[r][c] == 0) continue;
                const std::ptrdiff_t offset = (kernel.origin() - c) * direction * static_cast<std::ptrdiff_t>(kLanes);
                taps[count++] = {line(above) + offset, _mm_set1_ps(kernel.weight(r, c))};
            }
        }
        float* to = line(y);
        const std::size_t floats = picture.width * kLanes;
        for (std::size_t i = 0; i < floats; i += 4) {
            __m128 sum = _mm_loadu_ps(to + i);
            for (std::size_t tap = 0; tap < count; ++tap)
                sum = sum + _mm_loadu_ps(taps[tap].from + i) * taps[tap].weight;
            _mm_storeu_ps(to + i, sum);
        }
        std::fill_n(to + floats, 4, 0.0f);
    }

    void scan(std::uint32_t y, std::ptrdiff_t direction) {
        const float near = ownWeights[0];
        const float far = ownWeights[1];
        const std::ptrdiff_t start = direction > 0 ? 0 : static_cast<std::ptrdiff_t>(picture.width) - 1;
        float* at = line(y) + start * static_cast<std::ptrdiff_t>(kLanes);
        std::byte* pixel = picture.row(y) + start * static_cast<std::ptrdiff_t>(sizeof(T));
        One last{};
        One lastButOne{};
        for (std::uint32_t i = 0; i < picture.width; ++i) {
            One old = read(at);
            if (far > 0) old = old + lastButOne * far;
            if (near > 0) old = old + last * near;
            One fresh = old;
            PixelAccess<T>::Put(pixel, colors[chooser.choose(fresh)]);
            lastButOne = last;
            last = old - fresh;
            write(at, last);
            at += direction * static_cast<std::ptrdiff_t>(kLanes);
            pixel += direction * static_cast<std::ptrdiff_t>(sizeof(T));
        }
    }

    static One read(const float* at) {
        if constexpr (kLanes == 1)
            return *at;
        else
            return _mm_loadu_ps(at);
    }
    static void write(float* at, One value) {
        if constexpr (kLanes == 1)
            *at = value;
        else
            _mm_storeu_ps(at, value);
    }

    const Picture<T>& picture;
    const DitherKernel& kernel;
    Chooser& chooser;
    PackedColors<T> colors;
    const std::size_t rowFloats;
    const std::size_t kept;
    std::vector<float> rows;
    float ownWeights[kOwnReach] = {};  // one and two places further along the scan
};

}  // namespace quillon::ImageLib
