#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "cli/pictures/Picture.h"
#include "cli/pictures/PictureFormat.h"
#include "host/World.h"

namespace quillon::cli {

struct PictureExtent {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
};

// The picture in a host's memory at this depth, at 1/n of its size.
std::shared_ptr<host::World> WorldOf(Picture picture, std::uint32_t bitDepth, std::uint32_t n = 1);

// The reverse, at full size.
Picture PictureOf(const host::World& world);

// A picture in a host's memory.
struct HostPicture {
    std::shared_ptr<host::World> world{};
    PictureExtent fullExtent{};  // in its file
};

// The pictures of an input or a layer: a file a frame, one file for all, which is read once, or a movie.
class PictureSource {
public:
    // Reads one frame of a movie, see read().
    using ReadFrame = std::function<Picture(std::int32_t frame)>;

    // The pictures are given at 1/n of their size. With a reader the path is for its own use; without a path what it
    // reads is one picture for all frames.
    PictureSource(std::filesystem::path pathOrPattern, const RawLayout& rawLayout, std::uint32_t n,
                  ReadFrame movieReader = {});

    // Reads the picture of this frame, for what follows. Throws a Fault.
    void open(std::int32_t frame);
    // Bits per channel and size of that picture, as its file has them.
    std::uint32_t bitDepth() const { return openedDepth; }
    PictureExtent fullExtent() const { return openedExtent; }

    // Throws a Fault, which names the first of the frames' files that is missing.
    void requireAll(const std::vector<std::int32_t>& frames) const;

    // The picture of a frame at this depth, which is the same for all calls. Throws a Fault. Any thread may call.
    HostPicture read(std::int32_t frame, std::uint32_t depth);

private:
    HostPicture toHost(Picture picture, std::uint32_t depth) const;
    Picture load(std::int32_t frame) const;
    Picture take(std::int32_t frame);

    std::filesystem::path path;
    RawLayout layout;
    std::uint32_t reduction;
    ReadFrame reader;  // null: pictures in files
    bool hasFrames;    // a picture for each; else one for all
    std::uint32_t openedDepth = 0;
    PictureExtent openedExtent;

    std::mutex openedMutex;
    std::optional<std::int32_t> openedFrame;
    Picture opened;  // until it is read

    std::mutex onlyMutex;
    HostPicture only;  // the one picture for all frames
};

}  // namespace quillon::cli
