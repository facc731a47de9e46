#include <fmt/format.h>

#include <algorithm>

#include "cli/commands/Commands.h"
#include "cli/diagnostics/PrintLine.h"
#include "cli/diagnostics/ToolError.h"
#include "cli/pictures/Compare.h"
#include "cli/pictures/FrameRange.h"

namespace quillon::cli {

namespace {

constexpr const char* kUnits[] = {"1/255", "1/65535", "1/32768", "floats"};

RawLayout LayoutOf(const CompareOptions& options) {
    return {options.rawWidth, options.rawHeight, options.depth};
}

std::string ChannelRow(const char* name, const std::array<double, 4>& values) {
    return fmt::format("  {:<8} red {:.6g}, green {:.6g}, blue {:.6g}, alpha {:.6g}", name, values[0], values[1],
                       values[2], values[3]);
}

// One pair. False when it differs by more than is allowed.
bool ComparePair(const CompareOptions& options, std::int32_t frame) {
    const RawLayout layout = LayoutOf(options);
    const std::filesystem::path paths[] = {PathOfFrame(options.first, frame), PathOfFrame(options.second, frame)};
    const Picture a = ReadPicture(paths[0], layout), b = ReadPicture(paths[1], layout);
    const std::string pair = fmt::format("{} {}: ", paths[0].string(), paths[1].string());
    if (a.width != b.width || a.height != b.height) {
        PrintResult(pair + fmt::format("{}x{} and {}x{} pixels", a.width, a.height, b.width, b.height));
        return false;
    }
    const Difference found = Compare(a, b, options.limit);
    if (!options.output.empty()) WritePicture(PathOfFrame(options.output, frame), DrawDifference(a, b));
    if (found.differentPixels == 0) {
        PrintResult(pair + "equal");
        return true;
    }
    const auto percent = [&](std::uint64_t pixels) {
        return 100 * static_cast<double>(pixels) / static_cast<double>(found.pixels);
    };
    PrintResult(pair + fmt::format("{} of {} pixels differ ({:.3g} %), in {}", found.differentPixels, found.pixels,
                                   percent(found.differentPixels), kUnits[static_cast<int>(found.format)]));
    PrintResult(ChannelRow("largest", found.largest));
    PrintResult(ChannelRow("mean", found.mean));
    return percent(found.failedPixels) <= options.limitPercent;
}

void CheckNames(const CompareOptions& options, bool hasFrames) {
    const bool hasPattern = FindFramePattern(options.first) || FindFramePattern(options.second);
    if (hasPattern && !hasFrames)
        throw WrongCommandLine("", "a name has a place for the frame number", "say which frames with --frames");
    if (hasFrames && !hasPattern)
        throw WrongCommandLine("", "no name has a place for the frame number", "leave --frames out");
    if (!options.output.empty()) RequireWritable(options.output);
    if (hasFrames && !options.output.empty() && !FindFramePattern(options.output))
        throw WrongCommandLine(options.output.string(), "all differences would be written to one file",
                               "put #### or %04d into its name");
    for (const std::filesystem::path& path : {options.first, options.second}) RequireLayout(path, LayoutOf(options));
}

}  // namespace

int RunCompare(const CompareOptions& options) {
    const auto range = ParseFrameRange(options.frames);
    CheckNames(options, range.has_value());
    const std::vector<std::int32_t> frames = range ? range->frames() : std::vector<std::int32_t>{0};
    const auto failed = std::ranges::count_if(frames, [&](std::int32_t frame) { return !ComparePair(options, frame); });
    return failed == 0 ? 0 : kFault;
}

}  // namespace quillon::cli
