#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

#include "cli/pictures/PictureSource.h"

namespace quillon::cli {

struct MovieInfo;

// The pictures of an input or a layer, for frames in any order. Keeps the last one, as the picture is mostly looked at
// again with other values. One thread.
class FramePictures {
public:
    // A picture file, a pattern for one a frame, or a movie, which is read at this rate. Throws a Fault.
    FramePictures(const std::filesystem::path& path, double framesPerSecond, const std::optional<MovieInfo>& movie);
    // One picture for all frames.
    explicit FramePictures(Picture picture);

    // At 1/n of its size. The same object as long as nothing changes. Throws a Fault.
    const HostPicture& read(std::int32_t frame, std::uint32_t depth, std::uint32_t n);
    // As the file has them, of the picture of this frame.
    std::uint32_t bitDepthOf(std::int32_t frame);
    PictureExtent extentOf(std::int32_t frame);

private:
    const Picture& load(std::int32_t frame);

    std::function<Picture(std::int32_t frame)> reader;
    bool hasFrames = false;  // a picture for each; else one for all
    std::optional<std::int32_t> loadedFrame;
    Picture loaded;
    HostPicture given;
    std::uint32_t givenDepth = 0, givenReduction = 0;
};

}  // namespace quillon::cli
