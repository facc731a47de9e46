#include <ImfChannelList.h>
#include <ImfFrameBuffer.h>
#include <ImfFramesPerSecond.h>
#include <ImfHeader.h>
#include <ImfIO.h>
#include <ImfInputFile.h>
#include <ImfOutputFile.h>
#include <ImfStandardAttributes.h>
#include <ImfStringAttribute.h>
#include <ImfThreading.h>
#include <fmt/format.h>
#include <half.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <exception>
#include <stdexcept>

#include "cli/diagnostics/ToolError.h"
#include "cli/pictures/PictureFormat.h"

// Scan-line and tiled OpenEXR, half and float channels. By that format's convention color is premultiplied and
// linear: the first is undone on the way in and done on the way out, since a host's buffers are straight; the second
// is left as it is.

namespace quillon::cli {

namespace {

using Imath::Box2i;

// Of zlib's levels, the fast one.
constexpr int kZipLevel = 1;

constexpr const char* kColors[] = {"R", "G", "B"};

std::int64_t Extent(int low, int high) {
    return std::int64_t{high} - low + 1;
}

void CheckArea(const Box2i& window) {
    const std::int64_t width = Extent(window.min.x, window.max.x);
    const std::int64_t height = Extent(window.min.y, window.max.y);
    constexpr std::int64_t kMaximumPixels = kMaximumPictureBytes / 16;
    if (width < 1 || height < 1 || width > kMaximumPixels || height > kMaximumPixels / width) {
        throw Fault("", fmt::format("{} by {} pixels cannot be read", width, height), "make it smaller");
    }
}

// Which channel of the file feeds each of R, G, B, A: gray files have only Y. Null: the file has none.
std::array<const char*, 4> ChooseChannels(const Imf::ChannelList& channels) {
    const bool hasColor = std::any_of(std::begin(kColors), std::end(kColors),
                                      [&](const char* name) { return channels.findChannel(name) != nullptr; });
    const bool isGray = !hasColor && channels.findChannel("Y") && !channels.findChannel("RY");
    if (!hasColor && !isGray) throw Fault("", "it has no channels R, G, B and no gray channel Y");
    std::array<const char*, 4> chosen = {isGray ? "Y" : "R", isGray ? "Y" : "G", isGray ? "Y" : "B", "A"};
    for (const char*& name : chosen) {
        const Imf::Channel* channel = channels.findChannel(name);
        if (channel && (channel->xSampling != 1 || channel->ySampling != 1)) {
            throw Fault("", fmt::format("channel {} is subsampled", name), "save it with all channels in full size");
        }
        if (!channel) name = nullptr;
    }
    return chosen;
}

// All pixels of the data window. A gray file is read once into R and then spread; an absent alpha is 1.
Picture ReadDataWindow(Imf::InputFile& file) {
    const Box2i window = file.header().dataWindow();
    const auto width = static_cast<std::uint32_t>(Extent(window.min.x, window.max.x));
    const auto height = static_cast<std::uint32_t>(Extent(window.min.y, window.max.y));
    const auto chosen = ChooseChannels(file.header().channels());
    Picture picture = Picture::Make(width, height, SampleFormat::real, ChannelOrder::rgba);
    const bool isGray = chosen[0] && chosen[0][0] == 'Y';

    Imf::FrameBuffer frameBuffer;
    for (int i = 0; i < 4; ++i) {
        if (!chosen[i] || (isGray && (i == 1 || i == 2))) continue;
        frameBuffer.insert(
            chosen[i], Imf::Slice::Make(Imf::FLOAT, picture.row<float>(0) + i, window, 16, picture.rowBytes(), 1, 1));
    }
    file.setFrameBuffer(frameBuffer);
    file.readPixels(window.min.y, window.max.y);

    float* pixel = picture.row<float>(0);
    for (std::size_t i = 0; i < std::size_t{width} * height; ++i, pixel += 4) {
        if (isGray) pixel[1] = pixel[2] = pixel[0];
        if (!chosen[3]) pixel[3] = 1;
    }
    return picture;
}

// The display window is what an artist sees as the frame; what the data window leaves of it is transparent black.
Picture PlaceInFrame(Picture data, const Box2i& dataWindow, const Box2i& displayWindow) {
    if (dataWindow == displayWindow) return data;
    Picture frame = Picture::Make(static_cast<std::uint32_t>(Extent(displayWindow.min.x, displayWindow.max.x)),
                                  static_cast<std::uint32_t>(Extent(displayWindow.min.y, displayWindow.max.y)),
                                  SampleFormat::real, ChannelOrder::rgba);
    const int left = std::max(dataWindow.min.x, displayWindow.min.x);
    const int right = std::min(dataWindow.max.x, displayWindow.max.x);
    const int bottom = std::min(dataWindow.max.y, displayWindow.max.y);
    for (int y = std::max(dataWindow.min.y, displayWindow.min.y); y <= bottom && left <= right; ++y) {
        const float* from = data.row<float>(y - dataWindow.min.y) + (std::int64_t{left} - dataWindow.min.x) * 4;
        std::copy_n(from, Extent(left, right) * 4,
                    frame.row<float>(y - displayWindow.min.y) + (std::int64_t{left} - displayWindow.min.x) * 4);
    }
    return frame;
}

void Premultiply(Picture& picture) {
    float* pixel = picture.row<float>(0);
    for (std::size_t i = 0; i < std::size_t{picture.width} * picture.height; ++i, pixel += 4) {
        for (int channel = 0; channel < 3; ++channel) pixel[channel] *= pixel[3];
    }
}

// The library's streams over memory.
class ByteInput : public Imf::IStream {
public:
    explicit ByteInput(std::span<const std::byte> file) : IStream("the file"), bytes(file) {}
    bool read(char to[], int count) override {
        const auto wanted = static_cast<std::uint64_t>(count);
        if (wanted > bytes.size() - at) throw std::runtime_error("it is cut off");
        std::memcpy(to, bytes.data() + at, wanted);
        at += wanted;
        return at < bytes.size();
    }
    std::uint64_t tellg() override { return at; }
    void seekg(std::uint64_t position) override { at = std::min<std::uint64_t>(position, bytes.size()); }

private:
    std::span<const std::byte> bytes;
    std::uint64_t at = 0;
};

class ByteOutput : public Imf::OStream {
public:
    ByteOutput() : OStream("the file") {}
    void write(const char from[], int count) override {
        const auto size = static_cast<std::size_t>(count);
        if (bytes.size() < at + size) bytes.resize(at + size);
        std::memcpy(bytes.data() + at, from, size);
        at += size;
    }
    std::uint64_t tellp() override { return at; }
    void seekp(std::uint64_t position) override { at = position; }

    std::vector<std::byte> bytes;

private:
    std::uint64_t at = 0;
};

constexpr Imf::Compression kCompressions[] = {Imf::NO_COMPRESSION,  Imf::RLE_COMPRESSION, Imf::ZIPS_COMPRESSION,
                                              Imf::ZIP_COMPRESSION, Imf::PIZ_COMPRESSION, Imf::DWAA_COMPRESSION,
                                              Imf::DWAB_COMPRESSION};
static_assert(std::size(kCompressions) == std::size(kExrCompressions));

Imf::Header HeaderFor(const Picture& picture, const StorageOptions& options) {
    Imf::Header header(static_cast<int>(picture.width), static_cast<int>(picture.height),
                       static_cast<float>(options.pixelAspect));
    const std::string byType = options.isExrHalf ? "piz" : "rle";
    const auto* const name =
        std::ranges::find(kExrCompressions, options.exrCompression.empty() ? byType : options.exrCompression);
    // By default what is fast for its size. A frame of glow at 1920x1080: halves take 7.4 MB by piz and 8.3 MB by zips
    // in about the same time; floats, whose last bits are noise, 29.5 MB by rle and 25.1 MB by zips in five times as
    // long.
    header.compression() = kCompressions[name - kExrCompressions];
    header.zipCompressionLevel() = kZipLevel;
    header.insert("software", Imf::StringAttribute("quillon"));
    if (options.framesPerSecond != 0) Imf::addFramesPerSecond(header, Imf::guessExactFps(options.framesPerSecond));
    for (const char* channel : {"R", "G", "B", "A"}) {
        if (options.hasAlpha || channel[0] != 'A')
            header.channels().insert(channel, Imf::Channel(options.isExrHalf ? Imf::HALF : Imf::FLOAT));
    }
    return header;
}

std::vector<half> ToHalves(const Picture& picture) {
    const float* const samples = picture.row<float>(0);
    return {samples, samples + std::size_t{4} * picture.width * picture.height};
}

}  // namespace

void UseThreads(unsigned threads) {
    Imf::setGlobalThreadCount(static_cast<int>(threads));
}

Picture ReadExr(std::span<const std::byte> bytes, const RawLayout&) {
    try {
        // Bounds what the library allocates while it reads the header; the true limit follows.
        Imf::Header::setMaxImageSize(1 << 17, 1 << 17);
        Imf::Header::setMaxTileSize(1 << 13, 1 << 13);
        ByteInput stream(bytes);
        Imf::InputFile file(stream);
        const Box2i dataWindow = file.header().dataWindow();
        const Box2i displayWindow = file.header().displayWindow();
        CheckArea(dataWindow);
        CheckArea(displayWindow);
        Picture picture = PlaceInFrame(ReadDataWindow(file), dataWindow, displayWindow);
        Unpremultiply(picture);
        return picture;
    } catch (const ToolError&) {
        throw;
    } catch (const std::exception& error) {
        throw Fault("", error.what(), "scan-line and tiled EXR files can be read");
    }
}

std::vector<std::byte> WriteExr(const Picture& picture, const StorageOptions& options) {
    Picture floats = Convert(picture, SampleFormat::real, ChannelOrder::rgba);
    if (options.hasAlpha) Premultiply(floats);
    try {
        const Imf::Header header = HeaderFor(floats, options);
        const auto halves = options.isExrHalf ? ToHalves(floats) : std::vector<half>();
        // Both have four samples a pixel, whatever is written of them.
        const std::size_t sampleBytes = options.isExrHalf ? sizeof(half) : sizeof(float);
        const auto* const samples = options.isExrHalf ? reinterpret_cast<const char*>(halves.data())
                                                      : reinterpret_cast<const char*>(floats.pixels.data());
        Imf::FrameBuffer frameBuffer;
        std::size_t offset = 0;
        for (const char* name : {"R", "G", "B", "A"}) {
            if (const Imf::Channel* channel = header.channels().findChannel(name))
                frameBuffer.insert(name, Imf::Slice(channel->type, const_cast<char*>(samples + offset), 4 * sampleBytes,
                                                    4 * sampleBytes * floats.width));
            offset += sampleBytes;
        }
        ByteOutput output;
        {
            Imf::OutputFile file(output, header);
            file.setFrameBuffer(frameBuffer);
            file.writePixels(static_cast<int>(floats.height));
        }  // the table of lines is written when the file ends
        return std::move(output.bytes);
    } catch (const std::exception& error) {
        throw Fault("", error.what());
    }
}

}  // namespace quillon::cli
