#include "cli/movie/MovieWriter.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "cli/diagnostics/ToolError.h"
#include "cli/movie/Movie.h"
#include "cli/system/FileEnding.h"

namespace quillon::cli {

namespace {

constexpr std::size_t kMostPending = 3;

// Conversion to Y'CbCr is BT.709 in limited range, and the file says so.
constexpr const char* kToVideo =
    "scale=out_color_matrix=bt709:out_range=tv,"
    "setparams=color_primaries=bt709:color_trc=bt709:colorspace=bt709:range=tv";

struct MovieForm {
    const char* ending;
    const char* container;
    bool hasAlpha;
    std::vector<std::string> arguments;
};

const std::vector<MovieForm>& MovieForms() {
    static const std::vector<MovieForm> kForms = {
        // Players want even sizes and every second color sample.
        {".mp4",
         "mp4",
         false,
         {"-vf", std::string("pad=ceil(iw/2)*2:ceil(ih/2)*2,") + kToVideo, "-c:v", "libx264", "-pix_fmt", "yuv420p",
          "-crf", "18"}},
        {".mov",
         "mov",
         true,
         {"-vf", kToVideo, "-c:v", "prores_ks", "-profile:v", "4444", "-pix_fmt", "yuva444p10le", "-vendor", "apl0"}},
        {".webm",
         "webm",
         true,
         {"-vf", kToVideo, "-c:v", "libvpx-vp9", "-pix_fmt", "yuva420p", "-crf", "24", "-b:v", "0"}},
        {".gif", "gif", true, {"-filter_complex", "split[a][b];[a]palettegen[palette];[b][palette]paletteuse"}},
    };
    return kForms;
}

const MovieForm& FormOf(const std::filesystem::path& path) {
    return *std::ranges::find(MovieForms(), LowerEnding(path), &MovieForm::ending);
}

}  // namespace

bool MovieWriter::HasAlpha(const std::filesystem::path& path) {
    return FormOf(path).hasAlpha;
}

MovieWriter::MovieWriter(std::filesystem::path output, MovieOptions movieOptions)
    : path(std::move(output)), options(std::move(movieOptions)) {}

void MovieWriter::start(const Form& frames) {
    const MovieForm& form = FormOf(path);
    try {
        temporary = std::make_unique<TemporaryPath>(path.parent_path(), TemporaryPath::Kind::folder);
    } catch (const std::filesystem::filesystem_error& error) {
        throw Fault(path.string(), "cannot be written: " + error.code().message(), "choose another place with -o");
    }
    std::vector<std::string> arguments = {"-v",
                                          "error",
                                          "-y",
                                          "-f",
                                          "rawvideo",
                                          "-pixel_format",
                                          frames.bitDepth == 8 ? "rgba" : "rgba64le",
                                          "-video_size",
                                          fmt::format("{}x{}", frames.width, frames.height),
                                          "-framerate",
                                          RateOf(options.framesPerSecond).text(),
                                          "-i",
                                          "-"};
    arguments.insert(arguments.end(), form.arguments.begin(), form.arguments.end());
    if (std::string_view(form.container) != "gif")
        arguments.insert(arguments.end(), {"-color_primaries", "bt709", "-color_trc", "bt709", "-colorspace", "bt709",
                                           "-color_range", "tv"});
    arguments.insert(arguments.end(), options.codecArgs.begin(), options.codecArgs.end());
    arguments.insert(arguments.end(), {"-f", form.container, "file:" + encodedFile().string()});
    encoder = StartMovieProgram("ffmpeg", arguments, ChildProcess::Pipe::toChild);
}

std::filesystem::path MovieWriter::encodedFile() const {
    return temporary->path() / "movie";
}

void MovieWriter::add(std::vector<std::byte> frame, const Form& frames) {
    if (!encoder) start(frames);
    pending.push_back(pool.run([this, bytes = std::move(frame)] { return encoder->write(bytes); }));
    while (pending.size() > kMostPending) finishOldest();
}

void MovieWriter::finishOldest() {
    const bool isWritten = pending.front().get();
    pending.pop_front();
    if (!isWritten) fail();
}

void MovieWriter::finish() {
    while (!pending.empty()) finishOldest();
    if (!encoder) return;
    if (encoder->wait() != 0) fail();
    std::error_code error;
    std::filesystem::rename(encodedFile(), path, error);
    if (error) throw Fault(path.string(), "cannot be written: " + error.message(), "choose another place with -o");
}

void MovieWriter::fail() {
    const int status = encoder->wait();
    const std::string words = encoder->lastWords();
    const std::string ended = status < 0 ? "it was killed or crashed" : fmt::format("it ended with {}", status);
    throw Fault(path.string(), "ffmpeg cannot write it: " + (words.empty() ? ended : words));
}

}  // namespace quillon::cli
