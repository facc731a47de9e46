#include <cstring>

#include "cli/diagnostics/ToolError.h"
#include "cli/pictures/PictureFormat.h"
#include "imagelib/ImageDecoder.h"
#include "platform/MemoryShortage.h"

namespace quillon::cli {

Picture ReadOther(std::span<const std::byte> file, const RawLayout&) {
    const DecodedImage image = DecodeImage(file);
    if (!image) {
        TakeMemoryShortage();  // this fault says it; the effect is not to blame for it later
        throw Fault("", "it is damaged, too large, or none of PNG, EXR, JPEG, BMP, GIF, PSD, Radiance HDR and TGA");
    }
    Picture picture = Picture::Make(image.width, image.height,
                                    image.bitDepth == 32 ? SampleFormat::real : SampleFormat::byte, ChannelOrder::rgba);
    std::memcpy(picture.pixels.data(), image.pixels.get(), picture.pixels.size());
    return picture;
}

}  // namespace quillon::cli
