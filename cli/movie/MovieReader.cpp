#include "cli/movie/MovieReader.h"

#include <fmt/format.h>

#include <utility>

#include "cli/diagnostics/TextScanner.h"
#include "cli/diagnostics/ToolError.h"
#include "cli/movie/Movie.h"
#include "cli/pictures/PictureFormat.h"

namespace quillon::cli {

namespace {

// "WIDTH 12" of a picture's header.
std::uint32_t NumberAfter(const std::string& header, std::string_view key) {
    const std::size_t at = header.find(key);
    std::string_view rest = at == std::string::npos ? "" : std::string_view(header).substr(at + key.size());
    return static_cast<std::uint32_t>(TakeNumber(rest).value_or(0));
}

}  // namespace

MovieReader::MovieReader(std::filesystem::path file, double framesPerSecond, std::uint32_t depth,
                         std::vector<std::int32_t> wantedFrames)
    : path(std::move(file)), rate(framesPerSecond), bitDepth(depth), frames(std::move(wantedFrames)) {}

Picture MovieReader::read(std::int32_t frame) {
    std::unique_lock lock(mutex);
    hasChanged.wait(lock, [&] { return hasFailed || (turn < frames.size() && frames[turn] == frame); });
    if (hasFailed) throw Fault(path.string(), "cannot be read any further");
    try {
        Picture picture = decode(frame);
        ++turn;
        hasChanged.notify_all();
        return picture;
    } catch (...) {
        hasFailed = true;
        hasChanged.notify_all();
        throw;
    }
}

Picture MovieReader::decode(std::int32_t frame) {
    // Pictures with a header each: rotation and changes of size are the decoder's matter.
    if (!decoder)
        decoder = StartMovieProgram("ffmpeg",
                                    {"-v", "error", "-nostdin", "-i", "file:" + path.string(), "-map", "0:v:0", "-vf",
                                     "fps=" + RateOf(rate).text() + ":start_time=0", "-f", "image2pipe", "-c:v", "pam",
                                     "-pix_fmt", bitDepth == 8 ? "rgba" : "rgba64be", "-"},
                                    ChildProcess::Pipe::fromChild);
    for (; decoded < frame; ++decoded) decodeNext();
    ++decoded;
    return decodeNext();
}

Picture MovieReader::decodeNext() {
    std::string header;
    while (!header.ends_with("ENDHDR\n")) {
        std::byte letter;
        if (decoder->read({&letter, 1}) != 1) {
            const bool isWhole = decoder->wait() == 0;
            fail(isWhole ? fmt::format("ends before frame {}", frames[turn])
                         : "ffmpeg cannot read it: " + decoder->lastWords());
        }
        header += static_cast<char>(letter);
        if (header.size() > 256) fail("ffmpeg gives pictures of another kind");
    }
    const std::uint32_t width = NumberAfter(header, "WIDTH "), height = NumberAfter(header, "HEIGHT ");
    const SampleFormat format = bitDepth == 8 ? SampleFormat::byte : SampleFormat::word;
    if (width == 0 || height == 0 || std::uint64_t{width} * height * 4 * SampleBytes(format) > kMaximumPictureBytes)
        fail(fmt::format("{}x{} pixels cannot be read", width, height));
    Picture picture = Picture::Make(width, height, format, ChannelOrder::rgba);
    if (decoder->read(picture.pixels) != picture.pixels.size()) fail("is cut off");
    if (format == SampleFormat::word)
        for (std::size_t i = 0; i < picture.pixels.size(); i += 2) std::swap(picture.pixels[i], picture.pixels[i + 1]);
    return picture;
}

void MovieReader::fail(const std::string& fault) {
    throw Fault(path.string(), fault);
}

}  // namespace quillon::cli
