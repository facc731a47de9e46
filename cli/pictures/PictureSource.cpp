#include "cli/pictures/PictureSource.h"

#include <utility>

#include "cli/pictures/Downsample.h"
#include "cli/pictures/FrameRange.h"

namespace quillon::cli {

std::shared_ptr<host::World> WorldOf(Picture picture, std::uint32_t bitDepth, std::uint32_t n) {
    const SampleFormat format = HostFormat(bitDepth);
    if (picture.format != format || picture.order != ChannelOrder::argb)
        picture = Convert(picture, format, ChannelOrder::argb);
    if (n > 1) picture = Downsample(picture, n);
    auto world = std::make_shared<host::World>(static_cast<A_long>(picture.width), static_cast<A_long>(picture.height),
                                               static_cast<int>(bitDepth));
    world->write(picture.pixels);
    return world;
}

std::uint32_t PictureSource::bitDepthAt(std::int32_t frame) {
    load(frame);
    return fileBitDepth;
}

PictureExtent PictureSource::fullExtentAt(std::int32_t frame) {
    load(frame);
    return fullExtent;
}

std::shared_ptr<host::World> PictureSource::at(std::int32_t frame, std::uint32_t bitDepth) {
    load(frame);
    if (world) return world;
    world = WorldOf(std::exchange(loaded, {}), bitDepth, reduction);
    return world;
}

void PictureSource::load(std::int32_t frame) {
    const std::filesystem::path wanted = PathOfFrame(path, frame);
    if (wanted == loadedPath) return;
    loaded = ReadPicture(wanted, layout);
    fullExtent = {loaded.width, loaded.height};
    world.reset();
    fileBitDepth = BitDepth(loaded.format);
    loadedPath = wanted;
}

}  // namespace quillon::cli
