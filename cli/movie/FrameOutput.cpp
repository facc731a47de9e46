#include "cli/movie/FrameOutput.h"

#include <fmt/format.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <optional>

#include "cli/diagnostics/ToolError.h"
#include "cli/movie/Movie.h"
#include "cli/pictures/FrameRange.h"
#include "platform/TemporaryPath.h"

namespace quillon::cli {

namespace {

class PictureFiles : public FrameOutput {
public:
    explicit PictureFiles(const OutputOptions& outputOptions) : options(outputOptions) {}
    std::vector<std::byte> encode(std::int32_t frame, const Picture& picture) override {
        WritePicture(PathOfFrame(options.path, frame), picture, options.storage);
        return {};
    }
    std::string add(std::int32_t frame, std::vector<std::byte>) override {
        return PathOfFrame(options.path, frame).string();
    }

private:
    const OutputOptions options;
};

// That all frames are like the first one that comes.
class OneForm {
public:
    void require(const Picture& picture) {
        const MovieWriter::Form given{picture.width, picture.height, BitDepth(picture.format)};
        const std::lock_guard lock(mutex);
        if (!form) form = given;
        if (form->width != given.width || form->height != given.height)
            throw Fault("",
                        fmt::format("a frame has {}x{} pixels, and others {}x{}", given.width, given.height,
                                    form->width, form->height),
                        "a movie has one size; write pictures");
    }
    MovieWriter::Form get() {
        const std::lock_guard lock(mutex);
        return form.value_or(MovieWriter::Form{});
    }

private:
    std::mutex mutex;
    std::optional<MovieWriter::Form> form;
};

class Stream : public FrameOutput {
public:
    explicit Stream(const OutputOptions& outputOptions) : options(outputOptions) {
#ifdef SIGPIPE
        std::signal(SIGPIPE, SIG_IGN);
#endif
    }
    std::vector<std::byte> encode(std::int32_t, const Picture& picture) override {
        if (options.stream == StreamForm::raw) return WriteRaw(picture, {});
        form.require(picture);
        return Y4mFrame(picture, options.background);
    }
    std::string add(std::int32_t, std::vector<std::byte> bytes) override {
        if (isFirst && options.stream == StreamForm::y4m) {
            const auto [width, height, bitDepth] = form.get();
            const FrameRate rate = RateOf(options.movie.framesPerSecond);
            const std::string header = Y4mHeader(width, height, bitDepth, rate.numerator, rate.denominator);
            print(header.data(), header.size());
        }
        isFirst = false;
        print(bytes.data(), bytes.size());
        return "";
    }

private:
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
    std::vector<std::byte> encode(std::int32_t, const Picture& picture) override {
        form.require(picture);
        if (MovieWriter::HasAlpha(options.path)) return RgbaFrame(picture);
        Picture opaque = picture;
        PlaceOver(opaque, options.background);
        return RgbaFrame(opaque);
    }
    std::string add(std::int32_t, std::vector<std::byte> bytes) override {
        writer.add(std::move(bytes), form.get());
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

std::unique_ptr<FrameOutput> MakeFrameOutput(const OutputOptions& options) {
    if (IsStandardOutput(options.path)) return std::make_unique<Stream>(options);
    if (IsMovieOutput(options.path)) return std::make_unique<Movie>(options);
    return std::make_unique<PictureFiles>(options);
}

}  // namespace quillon::cli
