#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

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

// The pictures of an input or a layer: a file a frame, or one file for all, which is read once.
class PictureSource {
public:
    // The pictures are given at 1/n of their size.
    PictureSource(std::filesystem::path pathOrPattern, const RawLayout& rawLayout, std::uint32_t n)
        : path(std::move(pathOrPattern)), layout(rawLayout), reduction(n) {}

    // Bits per channel of the picture of this frame, as its file has them.
    std::uint32_t bitDepthAt(std::int32_t frame);
    // The size of the picture of this frame in its file.
    PictureExtent fullExtentAt(std::int32_t frame);
    // The picture of this frame in a host's memory at this depth, which is the same for all calls. Throws a Fault.
    std::shared_ptr<host::World> at(std::int32_t frame, std::uint32_t bitDepth);

private:
    void load(std::int32_t frame);

    std::filesystem::path path;
    RawLayout layout;
    std::filesystem::path loadedPath;
    Picture loaded;
    std::uint32_t reduction;
    PictureExtent fullExtent;
    std::uint32_t fileBitDepth = 0;
    std::shared_ptr<host::World> world;  // null until it is asked for; takes the picture's place then
};

}  // namespace quillon::cli
