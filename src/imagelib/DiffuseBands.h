#pragma once

#include <algorithm>
#include <vector>

#include "imagelib/DitherKernels.h"
#include "imagelib/Picture.h"
#include "imagelib/Quantizers.h"

namespace quillon::ImageLib {

// Error diffusion from left to right, four rows at once: each is `skew` pixels later than the one above it, more than
// the kernel reaches ahead, so that every pixel finds the errors of its neighbors and adds them in the order of a
// single scan.
//
// Errors are stored by step: at step t row j of a band is at pixel t - j * skew. A step holds eight errors for each
// lane, those of the rows of the band before that the kernel still reaches, and then the band's own four, so that what
// comes from one, two or three rows above is one vector. Errors outside the picture are zero.
template <class T, class Chooser>
class BandDiffusion {
public:
    static constexpr std::uint32_t kRows = 4;

    // All four outlive it. `entries` are the chooser's entries in the form of the picture's pixels.
    BandDiffusion(const Picture<T>& reduced, const DitherKernel& kernel, Chooser& chosen, PackedColors<T> entries)
        : picture(reduced),
          chooser(chosen),
          colors(entries),
          above(kernel.height - 1),
          skew(kernel.origin() + kDistance),
          lead(3 * skew + DitherKernel::kMaxWidth + 1),
          steps(static_cast<std::ptrdiff_t>(picture.width) + 3 * skew),
          errors(static_cast<std::size_t>((lead + steps + 4 * skew) * kStep)) {
        const int origin = kernel.origin();
        for (int r = kernel.height - 1; r > 0; --r)
            for (int c = kernel.width - 1; c >= 0; --c)
                if (kernel.cells[r][c] != 0)
                    taps[tapCount++] = {(origin - c - r * skew) * kStep + above - r, _mm_set1_ps(kernel.weight(r, c))};
        for (int distance = 1; distance <= 2; ++distance)
            if (origin + distance < kernel.width) ownWeights[distance - 1] = kernel.weight(0, origin + distance);
    }

    // Reduces the whole picture in place. Once.
    void run() {
        for (std::uint32_t y = 0; y < picture.height; y += kRows) {
            if (y > 0) carryErrors();
            runBand(y);
        }
    }

private:
    static constexpr int kFirst = Chooser::kFirstLane;
    static constexpr int kLanes = Chooser::kEndLane - kFirst;
    static constexpr std::ptrdiff_t kStep = 8 * kLanes;  // floats
    // Far enough back that the errors of the row above are out of the processor's store buffer.
    static constexpr int kDistance = 8;

    struct Tap {
        std::ptrdiff_t offset;
        __m128 weight;
    };

    float* step(std::ptrdiff_t t) { return errors.data() + (lead + t) * kStep; }

    // The last rows of a band become the rows above of the next.
    void carryErrors() {
        for (std::ptrdiff_t t = -lead; t < steps; ++t)
            ForLanes<kLanes>(
                [&](auto lane) { _mm_storeu_ps(step(t) + lane * 8, _mm_loadu_ps(step(t + 4 * skew) + lane * 8 + 4)); });
    }

    void runBand(std::uint32_t y) {
        const std::uint32_t real = std::min(kRows, picture.height - y);
        std::byte* rows[kRows];
        for (std::uint32_t j = 0; j < kRows; ++j) rows[j] = picture.row(y + std::min(j, real - 1));
        __m128 last[kLanes] = {};
        __m128 lastButOne[kLanes] = {};
        const auto width = static_cast<std::ptrdiff_t>(picture.width);
        const std::ptrdiff_t firstWhole = real < kRows ? steps : std::min<std::ptrdiff_t>(3 * skew, steps);
        const std::ptrdiff_t endWhole = std::max(firstWhole, width);
        for (std::ptrdiff_t t = 0; t < steps; ++t) {
            static const std::byte kNoPixel[sizeof(T)] = {};
            const std::byte* from[kRows];
            if (t >= firstWhole && t < endWhole) {
                for (int j = 0; j < 4; ++j) from[j] = rows[j] + (t - j * skew) * static_cast<std::ptrdiff_t>(sizeof(T));
                std::uint32_t entries[4];
                advance(t, from, last, lastButOne, entries);
                for (std::size_t j = 0; j < 4; ++j)
                    PixelAccess<T>::Put(rows[j] + (from[j] - rows[j]), colors[entries[j]]);
                ForLanes<kLanes>([&](auto lane) { _mm_storeu_ps(step(t) + lane * 8 + above, last[lane]); });
                continue;
            }
            alignas(16) std::uint32_t inside[kRows];
            for (std::uint32_t j = 0; j < kRows; ++j) {
                const std::ptrdiff_t x = t - static_cast<std::ptrdiff_t>(j) * skew;
                inside[j] = x >= 0 && x < width && j < real ? ~0u : 0;
                from[j] = inside[j] ? rows[j] + x * static_cast<std::ptrdiff_t>(sizeof(T)) : kNoPixel;
            }
            std::uint32_t entries[4];
            advance(t, from, last, lastButOne, entries);
            const __m128 mask = _mm_load_ps(reinterpret_cast<const float*>(inside));
            for (std::size_t j = 0; j < 4; ++j)
                if (inside[j]) PixelAccess<T>::Put(rows[j] + (from[j] - rows[j]), colors[entries[j]]);
            for (int lane = 0; lane < kLanes; ++lane) {
                last[lane] = _mm_and_ps(mask, last[lane]);
                _mm_storeu_ps(step(t) + lane * 8 + above, last[lane]);
            }
        }
    }

    // Chooses for four pixels, and leaves their errors in `last`.
    void advance(std::ptrdiff_t t, const std::byte* const from[kRows], __m128 last[kLanes], __m128 lastButOne[kLanes],
                 std::uint32_t entries[4]) {
        FourPixels old = picture.gather(from);
        const float* here = step(t);
        for (const Tap *tap = taps, *end = taps + tapCount; tap != end; ++tap) {
            const float* errorsOfTap = here + tap->offset;
            ForLanes<kLanes>([&](auto lane) {
                __m128& sum = old.lane[kFirst + lane];
                sum = sum + _mm_loadu_ps(errorsOfTap + lane * 8) * tap->weight;
            });
        }
        const float near = ownWeights[0];
        const float far = ownWeights[1];
        ForLanes<kLanes>([&](auto lane) {
            __m128& sum = old.lane[kFirst + lane];
            if (far > 0) sum = sum + lastButOne[lane] * _mm_set1_ps(far);
            if (near > 0) sum = sum + last[lane] * _mm_set1_ps(near);
        });
        FourPixels fresh = old;
        chooser.choose(fresh, entries);
        ForLanes<kLanes>([&](auto lane) {
            lastButOne[lane] = last[lane];
            last[lane] = old.lane[kFirst + lane] - fresh.lane[kFirst + lane];
        });
    }

    const Picture<T>& picture;
    Chooser& chooser;
    PackedColors<T> colors;
    const int above;  // rows above that the kernel reaches from
    const std::ptrdiff_t skew;
    const std::ptrdiff_t lead;  // steps before the first, for what rows further up are ahead
    const std::ptrdiff_t steps;
    std::vector<float> errors;
    Tap taps[DitherKernel::kMaxHeight * DitherKernel::kMaxWidth];
    int tapCount = 0;
    float ownWeights[2] = {};  // one and two pixels further along the row
};

}  // namespace quillon::ImageLib
