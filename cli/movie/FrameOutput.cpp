#include "cli/movie/FrameOutput.h"

#include <fmt/format.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>

#include "cli/diagnostics/ToolError.h"
#include "cli/movie/Movie.h"
#include "cli/pictures/FrameRange.h"
#include "platform/TemporaryPath.h"

namespace quillon::cli {

namespace {

MovieWriter::Form FormOf(const Picture& picture) {
    return {picture.width, picture.height, BitDepth(picture.format)};
}

class Nowhere : public FrameOutput {
public:
    EncodedFrame encode(std::int32_t, const Picture&) const override { return {}; }
    std::string add(std::int32_t, EncodedFrame) override { return ""; }
};

class PictureFiles : public FrameOutput {
public:
    explicit PictureFiles(const OutputOptions& outputOptions) : options(outputOptions) {}
    EncodedFrame encode(std::int32_t frame, const Picture& picture) const override {
        WritePicture(PathOfFrame(options.path, frame), picture, options.storage);
        return {};
    }
    std::string add(std::int32_t frame, EncodedFrame) override { return PathOfFrame(options.path, frame).string(); }

private:
    const OutputOptions options;
};

// That all frames are like the first one.
class OneForm {
public:
    void require(const MovieWriter::Form& given) {
        if (!form) form = given;
        if (form->width != given.width || form->height != given.height)
            throw Fault("",
                        fmt::format("a frame has {}x{} pixels, and others {}x{}", given.width, given.height,
                                    form->width, form->height),
                        "a movie has one size; write pictures");
    }

private:
    std::optional<MovieWriter::Form> form;
};

class Stream : public FrameOutput {
public:
    explicit Stream(const OutputOptions& outputOptions) : options(outputOptions) {
#ifdef SIGPIPE
        std::signal(SIGPIPE, SIG_IGN);
#endif
    }
    EncodedFrame encode(std::int32_t, const Picture& picture) const override {
        return {FormOf(picture),
                options.stream == StreamForm::raw ? WriteRaw(picture, {}) : Y4mFrame(picture, options.background)};
    }
    std::string add(std::int32_t, EncodedFrame encoded) override {
        if (options.stream == StreamForm::y4m) {
            form.require(encoded.form);
            if (isFirst) printHeader(encoded.form);
            isFirst = false;
        }
        print(encoded.bytes.data(), encoded.bytes.size());
        return "";
    }

private:
    void printHeader(const MovieWriter::Form& frames) {
        const FrameRate rate = RateOf(options.movie.framesPerSecond);
        const std::string header =
            Y4mHeader(frames.width, frames.height, frames.bitDepth, rate.numerator, rate.denominator);
        print(header.data(), header.size());
    }

    void print(const void* bytes, std::size_t size) {
        errno = 0;
        if (std::fwrite(bytes, 1, size, stdout) == size && std::fflush(stdout) == 0) return;
        if (errno != EPIPE && errno != EINVAL)
            throw Fault("standard output", std::string("cannot be written: ") + std::strerror(errno));
        // Whoever read has seen enough. Threads are at work on frames that nobody wants.
        RemoveTemporaries();
        std::_Exit(0);
    }

    const OutputOptions options;
    OneForm form;
    bool isFirst = true;
};

class Movie : public FrameOutput {
public:
    explicit Movie(const OutputOptions& outputOptions) : options(outputOptions), writer(options.path, options.movie) {}
    EncodedFrame encode(std::int32_t, const Picture& picture) const override {
        if (MovieWriter::HasAlpha(options.path)) return {FormOf(picture), RgbaFrame(picture)};
        Picture opaque = picture;
        PlaceOver(opaque, options.background);
        return {FormOf(picture), RgbaFrame(opaque)};
    }
    std::string add(std::int32_t, EncodedFrame encoded) override {
        form.require(encoded.form);
        writer.add(std::move(encoded.bytes), encoded.form);
        return "";
    }
    std::string finish() override {
        writer.finish();
        return options.path.string();
    }

private:
    const OutputOptions options;
    OneForm form;
    MovieWriter writer;
};

}  // namespace

bool IsStandardOutput(const std::filesystem::path& path) {
    return path == "-";
}

bool IsPictureOutput(const std::filesystem::path& path) {
    return !path.empty() && !IsStandardOutput(path) && !IsMovieOutput(path);
}

std::unique_ptr<FrameOutput> MakeFrameOutput(const OutputOptions& options) {
    if (options.path.empty()) return std::make_unique<Nowhere>();
    if (IsStandardOutput(options.path)) return std::make_unique<Stream>(options);
    if (IsMovieOutput(options.path)) return std::make_unique<Movie>(options);
    return std::make_unique<PictureFiles>(options);
}

}  // namespace quillon::cli
