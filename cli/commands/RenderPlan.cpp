#include "cli/commands/RenderPlan.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <system_error>

#include "cli/diagnostics/ToolError.h"
#include "cli/effect/EffectSource.h"
#include "cli/movie/MovieReader.h"
#include "cli/pictures/Chart.h"
#include "cli/pictures/ContactSheet.h"
#include "platform/TemporaryPath.h"
#include "platform/Utf8Path.h"

namespace quillon::cli {

namespace {

// NAME=VALUE; the value may hold further equals signs.
std::pair<std::string, std::string> SplitAssignment(const char* option, const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0) {
        throw WrongCommandLine(fmt::format("{} {}", option, text), "write it as NAME=VALUE");
    }
    return {text.substr(0, equals), text.substr(equals + 1)};
}

std::optional<MovieInfo> ProbeIfMovie(const std::filesystem::path& path) {
    return IsMovieInput(path) ? std::optional(ProbeMovie(path)) : std::nullopt;
}

}  // namespace

RenderPlan::RenderPlan(const RenderOptions& renderOptions)
    : options(renderOptions),
      layout{options.rawWidth, options.rawHeight, options.depth},
      range(ParseFrameRange(options.frames)) {
    checkHost();
    checkInput(options.input);
    const std::optional<MovieInfo> movie = ProbeIfMovie(options.input);
    takeTiming(movie);
    checkLooks();
    checkOutput();
    frames = framesToRender();
    bool hasRaw = options.input.empty() || IsRawPicture(options.input);
    for (const std::string& text : options.values) values.push_back(SplitAssignment("--set", text));
    for (const std::string& text : options.layers) {
        auto [name, file] = SplitAssignment("--layer", text);
        checkInput(file);
        hasRaw = hasRaw || IsRawPicture(file);
        const std::filesystem::path path = PathFromUtf8(file);
        layers.push_back({name, sourceOf(path, ProbeIfMovie(path), frames)});
    }
    if (layout.width != 0 && !hasRaw) {
        throw WrongCommandLine("", "--size is for .argb pictures and for the test picture, as others know their size",
                               "leave it out");
    }
    // The whole sequence's first frame decides on depth and size for all parts of it.
    std::vector<std::int32_t> inputFrames = frames;
    if (frames.empty() || frames.front() != allFrames().front())
        inputFrames.insert(inputFrames.begin(), allFrames().front());
    input = sourceOf(options.input, movie, inputFrames);
}

// A movie knows its rate and its length.
void RenderPlan::takeTiming(const std::optional<MovieInfo>& movie) {
    framesPerSecond = options.framesPerSecond.value_or(movie ? movie->framesPerSecond : framesPerSecond);
    if (!movie || range) return;
    const double seconds = movie->frames / movie->framesPerSecond;
    const auto count = static_cast<std::int32_t>(std::lround(seconds * framesPerSecond));
    if (count < 1) throw Fault(options.input.string(), "does not say how long it is", "say which frames with --frames");
    range = FrameRange{0, count - 1, 1};
}

// What is rendered for a sheet.
void RenderPlan::checkLooks() const {
    if (!options.contactSheet.empty()) {
        RequireWritable(options.contactSheet);
        RequireOutside(options.contactSheet, options.effect);
    }
    if (!options.sweeps.empty()) {
        if (options.contactSheet.empty() || !options.output.empty())
            throw WrongCommandLine("--sweep", "is for --contact-sheet", "name a sheet, and leave -o out");
        if (options.sweeps.size() > 2)
            throw WrongCommandLine("--sweep", "a sheet has two directions", "give up to two");
        if (allFrames().size() > 1)
            throw WrongCommandLine("--sweep", "shows one frame", "choose it with --time, or --frames as in 12-12");
    } else if (!options.contactSheet.empty() && framesToRender().size() > ContactSheet::kMostPictures) {
        throw WrongCommandLine("--contact-sheet", fmt::format("shows at most {} frames", ContactSheet::kMostPictures),
                               "give --frames a step, as in 0-1000x10");
    }
    if (!options.contactSheet.empty() && options.jobs > 1)
        throw WrongCommandLine("--contact-sheet", "is made by one process", "leave -j out");
}

void RenderPlan::checkOutput() const {
    if (options.output.empty()) {
        if (options.contactSheet.empty()) throw WrongCommandLine("", "-o is missing", "say where the result goes");
        if (options.isResumed) throw WrongCommandLine("--resume", "is for sequences of pictures", "leave it out");
        return;
    }
    const bool isStream = IsStandardOutput(options.output), isMovie = !isStream && IsMovieOutput(options.output);
    if (options.stream && !isStream) throw WrongCommandLine("--format", "is for -o -", "leave it out");
    if (!isStream) RequireOutside(options.output, options.effect);
    if (options.part > options.parts)
        throw WrongCommandLine(fmt::format("--part {}/{}", options.part, options.parts),
                               "there are not so many pieces");
    if (!range && (options.parts != 1 || options.isResumed))
        throw WrongCommandLine("", "--part and --resume are for sequences", "say which frames with --frames");
    if ((isStream || isMovie) && options.isResumed)
        throw WrongCommandLine("--resume", "is for sequences of pictures", "leave it out");
    if (isMovie && !range)
        throw WrongCommandLine(options.output.string(), "is a movie", "say which frames with --frames");
    if (isStream || isMovie) return;
    RequireWritable(options.output);
    requirePattern(options.output);
    if (range && range->first + range->step <= range->last && !FindFramePattern(options.output)) {
        throw WrongCommandLine(options.output.string(), "all frames would be written to one file",
                               "put #### or %04d into its name");
    }
}

std::unique_ptr<PictureSource> RenderPlan::sourceOf(const std::filesystem::path& path,
                                                    const std::optional<MovieInfo>& movie,
                                                    std::vector<std::int32_t> wantedFrames) const {
    if (path.empty()) {
        const Picture chart =
            Convert(layout.width != 0 ? DrawChart(layout.width, layout.height) : DrawChart(kChartWidth, kChartHeight),
                    SampleFormat::byte, ChannelOrder::argb);
        return std::make_unique<PictureSource>(path, layout, options.downsample,
                                               [chart](std::int32_t) { return chart; });
    }
    if (!movie) return std::make_unique<PictureSource>(path, layout, options.downsample);
    const auto reader = std::make_shared<MovieReader>(path, framesPerSecond, movie->bitDepth, std::move(wantedFrames));
    return std::make_unique<PictureSource>(path, layout, options.downsample,
                                           [reader](std::int32_t frame) { return reader->read(frame); });
}

void RenderPlan::checkHost() const {
    const bool isPremiere = options.host == host::HostKind::premiere;
    if (!isPremiere && options.hostVersionMajor < 13) {
        throw WrongCommandLine(fmt::format("--host-version {}.{}", options.hostVersionMajor, options.hostVersionMinor),
                               "After Effects is played from 13.0 on");
    }
    if (isPremiere && options.route == host::Route::smart) {
        throw WrongCommandLine("--route smart", "Premiere Pro has only the classic route", "leave it out");
    }
    if (std::fabs(options.timeSeconds) > kMostSeconds) {
        throw WrongCommandLine("--time", fmt::format("a host's moments are within {} seconds of 0", kMostSeconds));
    }
}

void RenderPlan::requirePattern(const std::filesystem::path& path) const {
    if (FindFramePattern(path) && !range) {
        throw WrongCommandLine(path.string(), "has a place for the frame number", "say which frames with --frames");
    }
}

void RenderPlan::checkInput(const std::filesystem::path& path) const {
    if (!IsMovieInput(path)) requirePattern(path);
    RequireLayout(path, layout);
}

std::vector<std::int32_t> RenderPlan::framesToRender() const {
    if (!options.assignedFrames.empty()) return options.assignedFrames;
    const std::vector<std::int32_t> all = allFrames();
    const auto edge = [&](std::uint64_t piece) {
        return all.begin() + static_cast<std::ptrdiff_t>(all.size() * piece / options.parts);
    };
    std::vector<std::int32_t> left(edge(options.part - 1), edge(options.part));
    if (options.isResumed)
        std::erase_if(left, [&](std::int32_t frame) {
            std::error_code error;
            return std::filesystem::is_regular_file(PathOfFrame(options.output, frame), error);
        });
    return left;
}

void RenderPlan::requireInputs() const {
    for (const Layer& layer : layers) layer.pictures->requireAll(frames);
    input->requireAll(frames);
}

OutputOptions RenderPlan::outputOptions() const {
    OutputOptions output{.path = options.output,
                         .storage = options.storage,
                         .stream = options.stream.value_or(StreamForm::raw),
                         .background = options.background,
                         .movie = {.framesPerSecond = framesPerSecond, .codecArgs = {}}};
    output.storage.framesPerSecond = allFrames().size() > 1 ? framesPerSecond : 0;
    output.storage.pixelAspect = static_cast<double>(options.pixelAspect.num) / options.pixelAspect.den;
    std::istringstream words(options.codecArgs);
    for (std::string word; words >> word;) output.movie.codecArgs.push_back(word);
    return output;
}

void RenderPlan::announce(std::size_t done) const {
    if (frames.size() < 2) return;
    SetWordsAtSignals(fmt::format("\nquillon: stopped after {} of {} frames{}\n", done, frames.size(),
                                  IsPictureOutput(options.output) ? "; the same command with --resume goes on" : ""));
}

FrameTime RenderPlan::timeOf(std::int32_t frame) const {
    return range ? TimeOfFrame(frame, framesPerSecond) : TimeOfSeconds(options.timeSeconds);
}

host::HostSettings RenderPlan::settings(PictureExtent fullExtent) const {
    host::HostSettings settings;
    settings.kind = options.host;
    settings.versionMajor = static_cast<A_short>(options.hostVersionMajor);
    settings.versionMinor = static_cast<A_short>(options.hostVersionMinor);
    settings.route = options.route.value_or(host::Route::smart);
    settings.compWidth = static_cast<A_long>(options.compWidth != 0 ? options.compWidth : fullExtent.width);
    settings.compHeight = static_cast<A_long>(options.compHeight != 0 ? options.compHeight : fullExtent.height);
    settings.compPixelAspect = settings.layerPixelAspect = options.pixelAspect;
    settings.downsampleX = settings.downsampleY = {1, options.downsample};
    const FrameTime last = timeOf(allFrames().back());
    settings.timeStep = last.step;
    settings.timeScale = last.scale;
    settings.totalTime = std::max(last.time, 0) + last.step;
    settings.keepsRecords = false;
    return settings;
}

}  // namespace quillon::cli
