#include "cli/commands/Commands.h"
#include "cli/diagnostics/PrintLine.h"
#include "cli/diagnostics/ToolError.h"
#include "cli/movie/Movie.h"
#include "cli/pictures/Chart.h"
#include "cli/pictures/FrameRange.h"
#include "cli/pictures/PictureFormat.h"

namespace quillon::cli {

namespace {

constexpr std::int32_t kCycle = 48;  // frames until the footage is at its start again

// In the form in which outputs take frames: floats for EXR, else 8 bits.
Picture ChartOf(const ChartOptions& options, std::int32_t frame) {
    const float motion = static_cast<float>(frame % kCycle) / kCycle;
    const Picture chart = DrawChart(options.width, options.height, motion);
    const bool asFloats = IsFloatPicture(options.output);
    return Convert(chart, asFloats ? SampleFormat::real : SampleFormat::byte, ChannelOrder::argb);
}

void WriteFootage(const ChartOptions& options, const FrameRange& range) {
    if (IsPictureOutput(options.output) && !FindFramePattern(options.output))
        throw WrongCommandLine(options.output.string(), "has no place for the frame number",
                               "put #### or %04d into its name");
    OutputOptions where;
    where.path = options.output;
    const std::unique_ptr<FrameOutput> output = MakeFrameOutput(where);
    const auto print = [](const std::string& path) {
        if (!path.empty()) PrintResult(path);
    };
    for (const std::int32_t frame : range.frames())
        print(output->add(frame, output->encode(frame, ChartOf(options, frame))));
    print(output->finish());
}

}  // namespace

int RunChart(const ChartOptions& options) {
    if (const auto range = ParseFrameRange(options.frames)) {
        WriteFootage(options, *range);
        return 0;
    }
    RequireWritable(options.output);
    WritePicture(options.output, ChartOf(options, 0));
    PrintResult(options.output.string());
    return 0;
}

}  // namespace quillon::cli
