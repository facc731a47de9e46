#pragma once

#include <cstdint>

#include "cli/check/run/Trial.h"

namespace quillon::cli {

// Large enough for what an effect divides its picture into.
inline constexpr PictureExtent kTestExtent = {256, 144};

// A host whose composition has that extent.
host::HostSettings TestHost();

// A frame's number as a moment, at 25 a second.
FrameTime TestTime(std::int32_t frame);

// The test picture of this extent as the input, at 1/n of its size. Layers have no picture.
FrameInput TestFrame(std::uint32_t bitDepth, std::int32_t frame = 0, PictureExtent extent = kTestExtent,
                     std::uint32_t n = 1);

// Each layer of the effect gets the test picture of this extent, at 1/n of its size.
void GiveLayers(const LoadedEffect& effect, FrameInput& input, PictureExtent extent = kTestExtent, std::uint32_t n = 1);

// The same for equal pixels, in all processes of this program.
std::uint64_t DigestOf(const host::World& frame);

// " at 16 bits" and so on, for a situation.
inline constexpr std::uint32_t kDepths[] = {8, 16, 32};
std::string WordsOfDepth(std::uint32_t bitDepth);

}  // namespace quillon::cli
