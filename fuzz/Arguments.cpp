// A command line, one argument a line. The commands only look at what they are given.
//
// Planted once: no check for NaN in --fps.

#include <cmath>
#include <string>

#include "Input.h"
#include "cli/commands/CommandLine.h"
#include "cli/commands/EffectTemplates.h"
#include "cli/commands/Version.h"
#include "cli/diagnostics/ToolError.h"
#include "cli/pictures/FrameRange.h"
#include "cli/preview/Preview.h"

using quillon::fuzz::Require;

namespace quillon::cli {

namespace {

int runs = 0;  // of commands, by the command line at hand

int Ran(bool isRight) {
    Require(isRight, "a command gets numbers in their ranges");
    ++runs;
    return 0;
}

bool IsIn(double number, double least, double most) {
    return number >= least && number <= most;  // NaN is in none
}

bool IsDepth(std::uint32_t depth) {
    return depth == 0 || depth == 8 || depth == 16 || depth == 32;
}

int LookAtRender(const RenderOptions& options) {
    if (const auto range = ParseFrameRange(options.frames)) {
        Require(range->first >= 0 && range->first <= range->last && range->step > 0, "a range runs forwards");
        PathOfFrame(options.output, range->last);
    }
    return Ran(IsDepth(options.depth) && IsIn(options.framesPerSecond.value_or(25), 0.001, 100000) &&
               std::isfinite(options.timeSeconds) && IsIn(options.downsample, 1, 64) &&
               IsIn(options.storage.pngLevel, 0, 9) && IsIn(options.threads, 0, 256) && IsIn(options.jobs, 1, 256) &&
               options.part >= 1 && options.parts >= 1 && options.pixelAspect.den > 0 &&
               (options.rawWidth == 0) == (options.rawHeight == 0));
}

}  // namespace

int RunRender(const RenderOptions&) {
    return Ran(false);
}
int RunWorker() {
    return Ran(true);
}
int RunParams(const ParamsOptions& options) {
    return Ran(!options.effect.empty());
}
int RunInfo(const InfoOptions& options) {
    return Ran(!options.effect.empty());
}
int RunPack(const PackOptions& options) {
    return Ran(!options.folder.empty() && !options.output.empty());
}
int RunChart(const ChartOptions& options) {
    return Ran(options.width > 0 && options.height > 0);
}
int RunDocs(const DocsOptions&) {
    return Ran(true);
}
int RunDoctor() {
    return Ran(true);
}
int RunNew(const NewOptions& options) {
    return Ran(options.from.empty() || options.templateName == "basic");
}
int RunCheck(const CheckOptions& options) {
    return Ran(!options.effects.empty() && IsIn(options.level, 1, 5) && IsIn(options.secondsLimit, 0.1, 3600));
}
int RunCompare(const CompareOptions& options) {
    return Ran(IsDepth(options.depth) && IsIn(options.limit, 0, HUGE_VAL) && IsIn(options.limitPercent, 0, 100));
}
int RunPreview(const PreviewOptions& options) {
    return Ran(IsDepth(options.setup.depth) && IsIn(options.port, 0, 65535) && IsIn(options.setup.downsample, 1, 64) &&
               IsIn(options.setup.framesPerSecond, 0, 100000) && IsIn(options.timeLimitSeconds, 0.1, 86400));
}
std::vector<EffectTemplate> EffectTemplates() {
    return {{"basic", "A start"}};
}
std::vector<std::string> TemplateNames() {
    return {"basic"};
}
std::string VersionText() {
    return "quillon";
}

}  // namespace quillon::cli

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quillon::cli;
    static std::FILE* const kOutput = std::freopen("/dev/null", "w", stdout);  // of help
    Require(kOutput != nullptr, "output can go nowhere");
    std::vector<std::string> arguments;
    for (std::string_view rest = quillon::fuzz::TextOf(data, size); !rest.empty();) {
        arguments.emplace_back(rest.substr(0, rest.find('\n')));
        rest.remove_prefix(std::min(rest.size(), arguments.back().size() + 1));
    }
    runs = 0;
    try {
        const int status = RunCommandLine(arguments, LookAtRender);
        Require(status == 0 && runs <= 1, "a command line is one command, or help");
    } catch (const ToolError& error) {
        Require(error.exitStatus == kWrongCommandLine && !error.faults.front().text.empty(), "what is wrong is said");
    }
    return 0;
}
