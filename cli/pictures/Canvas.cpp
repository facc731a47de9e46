#include "cli/pictures/Canvas.h"

namespace quillon::cli {

Canvas::Canvas(std::uint32_t width, std::uint32_t height)
    : painted(Picture::Make(width, height, SampleFormat::real, ChannelOrder::rgba)) {
    forEach(frame(), [](float, float, float* pixel) { pixel[3] = 1; });
}

Box Canvas::frame() const {
    return {0, 0, static_cast<float>(painted.width), static_cast<float>(painted.height)};
}

}  // namespace quillon::cli
