#include "cli/pictures/PictureSource.h"

#include <string>
#include <system_error>
#include <utility>

#include "cli/diagnostics/ToolError.h"
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

Picture PictureOf(const host::World& world) {
    return {static_cast<std::uint32_t>(world.width()), static_cast<std::uint32_t>(world.height()),
            HostFormat(static_cast<std::uint32_t>(world.bitDepth())), ChannelOrder::argb, world.tightBytes()};
}

PictureSource::PictureSource(std::filesystem::path pathOrPattern, const RawLayout& rawLayout, std::uint32_t n,
                             ReadFrame movieReader)
    : path(std::move(pathOrPattern)),
      layout(rawLayout),
      reduction(n),
      reader(std::move(movieReader)),
      hasFrames(!path.empty() && (reader || FindFramePattern(path))) {}

void PictureSource::open(std::int32_t frame) {
    opened = load(frame);
    openedFrame = frame;
    openedDepth = BitDepth(opened.format);
    openedExtent = {opened.width, opened.height};
}

void PictureSource::requireAll(const std::vector<std::int32_t>& frames) const {
    if (!hasFrames || reader) return;
    for (const std::int32_t frame : frames) {
        std::error_code error;
        const std::filesystem::path file = PathOfFrame(path, frame);
        if (!std::filesystem::exists(file, error))
            throw Fault(file.string(), "no such file, for frame " + std::to_string(frame),
                        "shorten --frames, or add it");
    }
}

HostPicture PictureSource::read(std::int32_t frame, std::uint32_t depth) {
    if (hasFrames) return toHost(take(frame), depth);
    const std::lock_guard lock(onlyMutex);
    if (!only.world) only = toHost(take(frame), depth);
    return only;
}

Picture PictureSource::load(std::int32_t frame) const {
    return reader ? reader(frame) : ReadPicture(PathOfFrame(path, frame), layout);
}

Picture PictureSource::take(std::int32_t frame) {
    {
        const std::lock_guard lock(openedMutex);
        if (openedFrame && (openedFrame == frame || !hasFrames)) {
            openedFrame.reset();
            return std::exchange(opened, {});
        }
    }
    return load(frame);
}

HostPicture PictureSource::toHost(Picture picture, std::uint32_t depth) const {
    const PictureExtent extent{picture.width, picture.height};
    return {WorldOf(std::move(picture), depth, reduction), extent};
}

}  // namespace quillon::cli
