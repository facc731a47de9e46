#include "cli/commands/Commands.h"

#include "cli/diagnostics/PrintLine.h"
#include "cli/pictures/Chart.h"
#include "cli/pictures/PictureFormat.h"

namespace quillon::cli {

int RunChart(const ChartOptions& options) {
    RequireWritable(options.output);
    const Picture chart = DrawChart(options.width, options.height);
    // As EXR the floats as they are; all other forms of it are 8-bit pictures.
    const bool asFloats = IsFloatPicture(options.output);
    WritePicture(options.output, asFloats ? chart : Convert(chart, SampleFormat::byte, ChannelOrder::argb));
    PrintResult(options.output.string());
    return 0;
}

}  // namespace quillon::cli
