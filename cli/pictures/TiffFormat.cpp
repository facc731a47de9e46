#include <fmt/format.h>
#include <tiffio.h>

#include <cstdio>
#include <cstring>
#include <memory>

#include "cli/diagnostics/ToolError.h"
#include "cli/pictures/PictureFormat.h"

// TIFF of one picture: gray or RGB with or without alpha, 8 and 16 bits or floats, strips. Written are strips, deflate
// and straight alpha. Words are in the machine's order, which the library undoes for files from elsewhere.

namespace quillon::cli {

namespace {

// A file in memory, as the library's callbacks have it.
struct TiffMemory {
    std::span<const std::byte> read;  // when it is read
    std::vector<std::byte> written;   // when it is written
    std::uint64_t at = 0;

    std::uint64_t size() const { return read.empty() ? written.size() : read.size(); }
};

TiffMemory& MemoryOf(thandle_t handle) {
    return *static_cast<TiffMemory*>(handle);
}

tmsize_t ReadBytes(thandle_t handle, void* to, tmsize_t count) {
    TiffMemory& memory = MemoryOf(handle);
    const std::span bytes = memory.read.empty() ? std::span<const std::byte>(memory.written) : memory.read;
    const std::uint64_t left = memory.at < bytes.size() ? bytes.size() - memory.at : 0;
    const std::uint64_t size = std::min(left, static_cast<std::uint64_t>(count));
    if (size != 0) std::memcpy(to, bytes.data() + memory.at, size);
    memory.at += size;
    return static_cast<tmsize_t>(size);
}

tmsize_t WriteBytes(thandle_t handle, void* from, tmsize_t count) {
    TiffMemory& memory = MemoryOf(handle);
    const auto size = static_cast<std::uint64_t>(count);
    if (memory.written.size() < memory.at + size) memory.written.resize(memory.at + size);
    std::memcpy(memory.written.data() + memory.at, from, size);
    memory.at += size;
    return count;
}

toff_t SeekTo(thandle_t handle, toff_t offset, int from) {
    TiffMemory& memory = MemoryOf(handle);
    const std::uint64_t start = from == SEEK_SET ? 0 : from == SEEK_CUR ? memory.at : memory.size();
    return memory.at = start + offset;
}

int Close(thandle_t) {
    return 0;
}

toff_t SizeOf(thandle_t handle) {
    return MemoryOf(handle).size();
}

struct TiffEnd {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using OpenTiff = std::unique_ptr<TIFF, TiffEnd>;

// The library's own words go nowhere: which file they are about is unknown there, as frames are read at once.
OpenTiff OpenMemory(TiffMemory& memory, const char* mode) {
    static const bool kIsQuiet = [] {
        TIFFSetWarningHandler(nullptr);
        TIFFSetErrorHandler(nullptr);
        return true;
    }();
    static_cast<void>(kIsQuiet);
    return OpenTiff(
        TIFFClientOpen("memory", mode, &memory, ReadBytes, WriteBytes, SeekTo, Close, SizeOf, nullptr, nullptr));
}

[[noreturn]] void FailToRead(const std::string& why) {
    throw Fault("", why, "save it as gray or RGB with 8 or 16 bits or 32-bit floats, without tiles");
}

struct TiffLayout {
    std::uint32_t width = 0, height = 0;
    std::uint16_t bits = 1, channels = 1;
    bool isPlanar = false;  // each channel by itself
    bool hasAlpha = false;
    bool isPremultiplied = false;

    std::uint16_t colors() const { return channels >= 3 ? 3 : 1; }
};

TiffLayout LayoutOf(TIFF* tiff) {
    TiffLayout layout;
    std::uint16_t type = SAMPLEFORMAT_UINT, photometric = 0, planes = PLANARCONFIG_CONTIG, extraCount = 0;
    const std::uint16_t* extras = nullptr;
    TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &layout.width);
    TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &layout.height);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_BITSPERSAMPLE, &layout.bits);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLESPERPIXEL, &layout.channels);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLEFORMAT, &type);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_PLANARCONFIG, &planes);
    TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &photometric);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_EXTRASAMPLES, &extraCount, &extras);
    const bool isFloat = layout.bits == 32 && type == SAMPLEFORMAT_IEEEFP;
    const bool isWhole =
        (layout.bits == 8 || layout.bits == 16) && type != SAMPLEFORMAT_IEEEFP && type != SAMPLEFORMAT_INT;
    if (!isFloat && !isWhole) FailToRead(fmt::format("its {} bits per channel are of another kind", layout.bits));
    const std::uint16_t expected = photometric == PHOTOMETRIC_RGB ? 3 : 1;
    if ((photometric != PHOTOMETRIC_RGB && photometric != PHOTOMETRIC_MINISBLACK) || layout.channels < expected ||
        layout.channels != expected + extraCount)
        FailToRead("its colors are neither gray nor RGB");
    if (TIFFIsTiled(tiff)) FailToRead("it has tiles");
    if (layout.width == 0 || layout.height == 0 ||
        std::uint64_t{layout.width} * layout.height * layout.bits / 2 > kMaximumPictureBytes || layout.channels > 8)
        throw Fault("", fmt::format("{} by {} pixels cannot be read", layout.width, layout.height), "make it smaller");
    layout.isPlanar = planes == PLANARCONFIG_SEPARATE;
    layout.hasAlpha = extraCount > 0 && extras[0] != EXTRASAMPLE_UNSPECIFIED;
    layout.isPremultiplied = layout.hasAlpha && extras[0] == EXTRASAMPLE_ASSOCALPHA;
    // A gray picture's second channel would be found where the color green is.
    if (expected == 1 && extraCount > 1) FailToRead("it is gray with further channels");
    return layout;
}

// One row, pixel by pixel, red to alpha; `opaque` is full scale.
template <class Sample>
void SpreadRow(const TiffLayout& layout, const Sample* row, Sample* pixels, int channel, Sample opaque) {
    const std::size_t step = layout.isPlanar ? 1 : layout.channels;
    const auto spread = [&](std::size_t to, const Sample* from) {
        for (std::uint32_t x = 0; x < layout.width; ++x)
            pixels[std::size_t{4} * x + to] = from ? from[x * step] : opaque;
    };
    for (int c = 0; c < 3; ++c) {
        const int source = layout.colors() == 3 ? c : 0;
        if (!layout.isPlanar || source == channel) spread(c, layout.isPlanar ? row : row + source);
    }
    const int alpha = layout.colors();
    if (!layout.hasAlpha) spread(3, nullptr);
    if (layout.hasAlpha && (!layout.isPlanar || alpha == channel)) spread(3, layout.isPlanar ? row : row + alpha);
}

template <class Sample>
void ReadRows(TIFF* tiff, const TiffLayout& layout, Sample opaque, Picture& picture) {
    const std::uint16_t planes = layout.isPlanar ? std::uint16_t(layout.colors() + layout.hasAlpha) : std::uint16_t(1);
    const auto rowSize = static_cast<std::size_t>(TIFFScanlineSize(tiff));
    const std::size_t expected = std::size_t{layout.width} * sizeof(Sample) * (layout.isPlanar ? 1 : layout.channels);
    if (rowSize < expected) FailToRead("its rows are too short");
    std::vector<Sample> row(rowSize / sizeof(Sample) + 1);
    for (std::uint16_t plane = 0; plane < planes; ++plane) {
        for (std::uint32_t y = 0; y < layout.height; ++y) {
            if (TIFFReadScanline(tiff, row.data(), y, plane) < 0) FailToRead("it is damaged or cut off");
            SpreadRow(layout, row.data(), picture.row<Sample>(y), plane, opaque);
        }
    }
}

}  // namespace

Picture ReadTiff(std::span<const std::byte> file, const RawLayout&) {
    TiffMemory memory;
    memory.read = file;
    const OpenTiff tiff = OpenMemory(memory, "rm");
    if (!tiff) FailToRead("it is damaged or cut off");
    const TiffLayout layout = LayoutOf(tiff.get());
    const SampleFormat format = layout.bits == 8    ? SampleFormat::byte
                                : layout.bits == 16 ? SampleFormat::word
                                                    : SampleFormat::real;
    Picture picture = Picture::Make(layout.width, layout.height, format, ChannelOrder::rgba);
    if (layout.bits == 8) ReadRows<std::uint8_t>(tiff.get(), layout, 255, picture);
    if (layout.bits == 16) ReadRows<std::uint16_t>(tiff.get(), layout, 65535, picture);
    if (layout.bits == 32) ReadRows<float>(tiff.get(), layout, 1, picture);
    if (layout.isPremultiplied) Unpremultiply(picture);
    return picture;
}

std::vector<std::byte> WriteTiff(const Picture& picture, const StorageOptions& options) {
    const SampleFormat format = picture.format == SampleFormat::hostWord ? SampleFormat::word : picture.format;
    const bool isFloat = format == SampleFormat::real;
    const std::uint16_t channels = options.hasAlpha ? 4 : 3;
    const std::uint16_t straight = EXTRASAMPLE_UNASSALPHA;
    TiffMemory memory;
    OpenTiff tiff = OpenMemory(memory, "wm");
    if (!tiff) throw Fault("", "the library refuses it");
    TIFFSetField(tiff.get(), TIFFTAG_IMAGEWIDTH, picture.width);
    TIFFSetField(tiff.get(), TIFFTAG_IMAGELENGTH, picture.height);
    TIFFSetField(tiff.get(), TIFFTAG_BITSPERSAMPLE, BitDepth(format));
    TIFFSetField(tiff.get(), TIFFTAG_SAMPLEFORMAT, isFloat ? SAMPLEFORMAT_IEEEFP : SAMPLEFORMAT_UINT);
    TIFFSetField(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, channels);
    TIFFSetField(tiff.get(), TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(tiff.get(), TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff.get(), TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    TIFFSetField(tiff.get(), TIFFTAG_SOFTWARE, "quillon");
    if (options.hasAlpha) TIFFSetField(tiff.get(), TIFFTAG_EXTRASAMPLES, 1, &straight);
    TIFFSetField(tiff.get(), TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE);
    TIFFSetField(tiff.get(), TIFFTAG_PREDICTOR, isFloat ? PREDICTOR_FLOATINGPOINT : PREDICTOR_HORIZONTAL);
    TIFFSetField(tiff.get(), TIFFTAG_ZIPQUALITY, 1);
    TIFFSetField(tiff.get(), TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff.get(), 0));
    std::vector<std::byte> row(SampleBytes(format) * 4 * picture.width);
    for (std::uint32_t y = 0; y < picture.height; ++y) {
        ConvertRow(picture, y, format, ChannelOrder::rgba, row.data());
        const std::size_t pixelBytes = channels * SampleBytes(format);
        for (std::size_t x = 1; !options.hasAlpha && x < picture.width; ++x)
            std::memmove(row.data() + x * pixelBytes, row.data() + x * 4 * SampleBytes(format), pixelBytes);
        if (TIFFWriteScanline(tiff.get(), row.data(), y, 0) < 0) throw Fault("", "the library refuses its pixels");
    }
    tiff.reset();  // writes the directory
    return std::move(memory.written);
}

}  // namespace quillon::cli
