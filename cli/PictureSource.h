#pragma once

#include <cstdint>
#include <filesystem>

#include "cli/Picture.h"
#include "cli/PictureFormat.h"

namespace quillon::cli {

// The pictures of an input or a layer: a file a frame, or one file for all, which is read once.
class PictureSource {
public:
    PictureSource(std::filesystem::path pathOrPattern, const RawLayout& rawLayout)
        : path(std::move(pathOrPattern)), layout(rawLayout) {}

    // Bits per channel of the picture of this frame, as its file has them.
    std::uint32_t bitDepthAt(std::int32_t frame);
    // The picture of this frame in a host's form at this depth, until the next call. Throws a Fault.
    const Picture& at(std::int32_t frame, std::uint32_t bitDepth);

private:
    void load(std::int32_t frame);

    std::filesystem::path path;
    RawLayout layout;
    std::filesystem::path loadedPath;
    Picture loaded;
    std::uint32_t fileBitDepth = 0;
};

}  // namespace quillon::cli
