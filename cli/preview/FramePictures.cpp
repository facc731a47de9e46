#include "cli/preview/FramePictures.h"

#include <numeric>
#include <utility>
#include <vector>

#include "cli/movie/Movie.h"
#include "cli/movie/MovieReader.h"
#include "cli/pictures/FrameRange.h"

namespace quillon::cli {

namespace {

// Reads on where the next frame is wanted, and from the movie's start else.
class MovieSeeker {
public:
    MovieSeeker(std::filesystem::path file, double framesPerSecond, const MovieInfo& movie)
        : path(std::move(file)), rate(framesPerSecond), info(movie) {}

    Picture read(std::int32_t frame) {
        if (!reader || frame != next) {
            constexpr std::int32_t kMostAhead = 1000000;
            std::vector<std::int32_t> wanted(static_cast<std::size_t>(kMostAhead));
            std::iota(wanted.begin(), wanted.end(), frame);
            reader = std::make_unique<MovieReader>(path, rate, info.bitDepth, std::move(wanted));
        }
        try {
            Picture picture = reader->read(frame);
            next = frame + 1;
            return picture;
        } catch (...) {
            reader.reset();
            throw;
        }
    }

private:
    std::filesystem::path path;
    double rate;
    MovieInfo info;
    std::unique_ptr<MovieReader> reader;
    std::int32_t next = 0;
};

}  // namespace

FramePictures::FramePictures(const std::filesystem::path& path, double framesPerSecond,
                             const std::optional<MovieInfo>& movie)
    : hasFrames(movie || FindFramePattern(path)) {
    if (movie) {
        const auto seeker = std::make_shared<MovieSeeker>(path, framesPerSecond, *movie);
        reader = [seeker](std::int32_t frame) { return seeker->read(frame); };
    } else {
        reader = [path](std::int32_t frame) { return ReadPicture(PathOfFrame(path, frame)); };
    }
}

FramePictures::FramePictures(Picture picture) : loadedFrame(0), loaded(std::move(picture)) {}

const Picture& FramePictures::load(std::int32_t frame) {
    if (!loadedFrame || (hasFrames && *loadedFrame != frame)) {
        loadedFrame.reset();
        given = {};
        loaded = reader(frame);
        loadedFrame = frame;
    }
    return loaded;
}

const HostPicture& FramePictures::read(std::int32_t frame, std::uint32_t depth, std::uint32_t n) {
    const Picture& picture = load(frame);
    if (!given.world || givenDepth != depth || givenReduction != n) {
        given = {WorldOf(picture, depth, n), {picture.width, picture.height}};
        givenDepth = depth;
        givenReduction = n;
    }
    return given;
}

std::uint32_t FramePictures::bitDepthOf(std::int32_t frame) {
    return BitDepth(load(frame).format);
}

PictureExtent FramePictures::extentOf(std::int32_t frame) {
    const Picture& picture = load(frame);
    return {picture.width, picture.height};
}

}  // namespace quillon::cli
