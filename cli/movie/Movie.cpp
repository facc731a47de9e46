#include "cli/movie/Movie.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <numeric>
#include <string_view>
#include <system_error>

#include "cli/diagnostics/ToolError.h"
#include "cli/system/FileEnding.h"

namespace quillon::cli {

namespace {

using Json = nlohmann::json;

constexpr std::string_view kInputs[] = {".mp4", ".mov", ".webm", ".mkv", ".avi", ".m4v", ".mpg", ".mpeg",
                                        ".mts", ".mxf", ".ogv",  ".wmv", ".flv", ".y4m", ".ts",  ".m2ts"};
constexpr std::string_view kOutputs[] = {".mp4", ".mov", ".webm", ".gif"};

// How names of pixel formats say that a channel has more than 8 bits.
constexpr std::string_view kDeepFormats[] = {"p9",     "p10",    "p12",    "p14", "p16", "010",   "012",
                                             "016",    "210",    "216",    "48",  "64",  "gray9", "gray10",
                                             "gray12", "gray14", "gray16", "f32", "x2"};

// "NUMERATOR/DENOMINATOR", or a number in a text; 0 for anything else.
double NumberIn(const Json& object, const char* key) {
    if (!object.contains(key) || !object[key].is_string()) return 0;
    const std::string text = object[key].get<std::string>();
    const std::size_t slash = text.find('/');
    const double first = std::strtod(text.c_str(), nullptr);
    const double second = slash == std::string::npos ? 1 : std::strtod(text.c_str() + slash + 1, nullptr);
    return second > 0 && std::isfinite(first / second) ? first / second : 0;
}

}  // namespace

bool IsMovieInput(const std::filesystem::path& path) {
    return std::ranges::find(kInputs, LowerEnding(path)) != std::end(kInputs);
}

bool IsMovieOutput(const std::filesystem::path& path) {
    return std::ranges::find(kOutputs, LowerEnding(path)) != std::end(kOutputs);
}

FrameRate RateOf(double framesPerSecond) {
    const double whole = std::round(framesPerSecond * 1.001);
    const bool isWhole = framesPerSecond == std::round(framesPerSecond);
    if (!isWhole && std::fabs(whole / 1.001 - framesPerSecond) < 1e-3)
        return {static_cast<std::int64_t>(whole) * 1000, 1001};
    constexpr std::int64_t kFinest = 1000000;
    const std::int64_t numerator = std::llround(framesPerSecond * kFinest);
    const std::int64_t common = std::gcd(numerator, kFinest);
    return {numerator / common, kFinest / common};
}

std::unique_ptr<ChildProcess> StartMovieProgram(const std::string& program, const std::vector<std::string>& arguments,
                                                ChildProcess::Pipe pipe) {
    try {
        return std::make_unique<ChildProcess>(program, arguments, pipe);
    } catch (const std::system_error& error) {
        throw Fault(
            "", fmt::format("movies need the program {}: {}", program, error.code().message()),
            "install it (Debian: apt install ffmpeg) so that it is in PATH; sequences of pictures work without it");
    }
}

MovieInfo ProbeMovie(const std::filesystem::path& path) {
    std::error_code ignored;
    if (!std::filesystem::exists(path, ignored)) throw Fault(path.string(), "no such file", "check the name");
    const auto probe = StartMovieProgram("ffprobe",
                                         {"-v", "error", "-of", "json", "-select_streams", "v:0", "-show_streams",
                                          "-show_format", "file:" + path.string()},
                                         ChildProcess::Pipe::fromChild);
    std::string text;
    std::byte bytes[4096];
    while (const std::size_t count = probe->read(bytes)) text.append(reinterpret_cast<const char*>(bytes), count);
    const int status = probe->wait();
    const Json json = Json::parse(text, nullptr, /*allow_exceptions=*/false);
    const bool hasStream =
        json.is_object() && json.contains("streams") && json["streams"].is_array() && !json["streams"].empty();
    if (status != 0 || !hasStream)
        throw Fault(path.string(),
                    "cannot be read as a movie: " + (status != 0 ? probe->lastWords() : "it has no picture"));

    const Json& stream = json["streams"][0];
    MovieInfo info;
    const double mean = NumberIn(stream, "avg_frame_rate"), base = NumberIn(stream, "r_frame_rate");
    if (mean > 0 || base > 0) info.framesPerSecond = mean > 0 ? mean : base;
    double seconds = NumberIn(stream, "duration");
    if (seconds <= 0 && json.contains("format")) seconds = NumberIn(json["format"], "duration");
    const double counted = NumberIn(stream, "nb_frames");
    const double frames = counted > 0 ? counted : std::round(seconds * info.framesPerSecond);
    info.frames = static_cast<std::int32_t>(std::clamp(frames, 0.0, 1e9 - 1));
    const std::string format = stream.value("pix_fmt", "");
    if (std::ranges::any_of(kDeepFormats,
                            [&](std::string_view part) { return format.find(part) != std::string::npos; }))
        info.bitDepth = 16;
    return info;
}

}  // namespace quillon::cli
