#include "cli/PictureSource.h"

#include "cli/FrameRange.h"

namespace quillon::cli {

std::uint32_t PictureSource::bitDepthAt(std::int32_t frame) {
    load(frame);
    return fileBitDepth;
}

const Picture& PictureSource::at(std::int32_t frame, std::uint32_t bitDepth) {
    load(frame);
    const SampleFormat format = HostFormat(bitDepth);
    if (loaded.format != format || loaded.order != ChannelOrder::argb) {
        loaded = Convert(loaded, format, ChannelOrder::argb);
    }
    return loaded;
}

void PictureSource::load(std::int32_t frame) {
    const std::filesystem::path wanted = PathOfFrame(path, frame);
    if (wanted == loadedPath) return;
    loaded = ReadPicture(wanted, layout);
    fileBitDepth = BitDepth(loaded.format);
    loadedPath = wanted;
}

}  // namespace quillon::cli
