#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::cli {

// FIRST-LAST[xSTEP]: frame numbers from 0, both ends included; the step is 1 or more.
struct FrameRange {
    std::int32_t first = 0;
    std::int32_t last = 0;
    std::int32_t step = 1;

    std::vector<std::int32_t> frames() const;
};

// The value of --frames. Nothing when the text is empty; throws WrongCommandLine for no range, or one that runs
// backwards.
std::optional<FrameRange> ParseFrameRange(const std::string& text);

// Where a file name has its frame number: "%04d" (or "%d") or a run of two or more '#', one a digit. Folders hold no
// pattern. Nothing without one; throws WrongCommandLine for a name with more than one.
struct FramePattern {
    std::string before;  // the path in front of the number
    std::size_t digits;  // at least that many, with zeros in front
    std::string after;
};
std::optional<FramePattern> FindFramePattern(const std::filesystem::path& path);

// The path of one frame; a path without a pattern is that of all frames.
std::filesystem::path PathOfFrame(const std::filesystem::path& path, std::int32_t frame);

}  // namespace quillon::cli
