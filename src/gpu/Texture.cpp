#include "gpu/Texture.h"

#include <GL/glew.h>

#include <algorithm>
#include <cstring>
#include <limits>

#include "imagelib/HostRange.h"
#include "imagelib/ImageDecoder.h"
#include "imagelib/Surface.h"
#include "package/FileAccess.h"
#include "platform/WideText.h"

namespace quillon {

namespace {

constexpr GLint kHostOrder[] = {GL_RED, GL_GREEN, GL_BLUE, GL_ALPHA};
constexpr GLint kRgbaOrder[] = {GL_ALPHA, GL_RED, GL_GREEN, GL_BLUE};

GLint InternalFormat(std::uint32_t bitDepth) {
    return bitDepth > 8 ? GL_RGBA32F : GL_RGBA;
}

// A picture is widened in bands of rows, small enough to stay in the processor's cache until GL takes them up.
constexpr std::size_t kBandBytes = 256 * 1024;

// Bytes of a pixel as GL reads it.
std::size_t PixelBytes(std::uint32_t bitDepth) {
    switch (GLChannelType(bitDepth)) {
        case GL_FLOAT:
            return 16;
        case GL_UNSIGNED_SHORT:
            return 8;
        default:
            return 4;
    }
}

// GL_UNPACK_ROW_LENGTH in pixels. Integer arithmetic with a surprise that is meant: 15 bits count as one byte, which
// doubles the row length. A depth below 8 has none, and rows then follow each other tightly.
GLint UnpackRowLength(const PixelLayout& layout) {
    const std::int64_t channelBytes = layout.bitDepth >> 3;
    if (channelBytes == 0) return 0;
    return static_cast<GLint>(
        std::min<std::int64_t>(layout.rowBytes / channelBytes / 4, std::numeric_limits<GLint>::max()));
}

// The bytes of the caller's memory that the layout names: all rows, the last one no further than its width.
std::size_t SourceBytes(const PixelLayout& layout) {
    if (layout.height == 0) return 0;
    const auto rowStride = static_cast<std::size_t>(layout.rowBytes);
    const std::size_t lastRow = std::min<std::size_t>(layout.width * PixelBytes(layout.bitDepth), rowStride);
    return (std::size_t{layout.height} - 1) * rowStride + lastRow;
}

// Whether GL takes such a picture at all. A script can name extents of which even the number of bytes wraps.
bool FitsGl(const PixelLayout& layout) {
    GLint longest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &longest);
    return std::max(layout.width, layout.height) <= static_cast<std::uint32_t>(longest);
}

// The bytes that GL reads for an upload with this row length.
std::size_t BytesReadByGl(const PixelLayout& layout, GLint rowLength) {
    if (layout.height == 0 || layout.width == 0) return 0;
    const std::size_t rowPixels = rowLength > 0 ? static_cast<std::size_t>(rowLength) : layout.width;
    return ((std::size_t{layout.height} - 1) * rowPixels + layout.width) * PixelBytes(layout.bitDepth);
}

// Rows that lie upwards in memory, copied to lie tightly downwards.
std::vector<std::byte> RepackDownwards(const std::byte* source, PixelLayout& layout) {
    const std::size_t rowBytes = layout.width * PixelBytes(layout.bitDepth);
    std::vector<std::byte> rows(rowBytes * layout.height);
    const std::size_t readable = std::min<std::size_t>(rowBytes, static_cast<std::size_t>(-layout.rowBytes));
    for (std::uint32_t y = 0; y < layout.height; ++y)
        std::memcpy(rows.data() + y * rowBytes, source + y * layout.rowBytes, readable);
    layout.rowBytes = static_cast<std::int64_t>(rowBytes);
    return rows;
}

// Host range to GL's, row by row at the stride of the source.
void expandTo16(const std::byte* source, const PixelLayout& layout, std::byte* widened) {
    const std::size_t channels = std::min<std::size_t>(std::size_t{layout.width} * 4, layout.rowBytes / 2);
    for (std::uint32_t y = 0; y < layout.height; ++y)
        WidenHostRow(source + y * layout.rowBytes, widened + y * layout.rowBytes, channels);
}

void SpecifyStorage(const PixelLayout& layout, const void* pixels) {
    glTexImage2D(GL_TEXTURE_2D, 0, InternalFormat(layout.bitDepth), static_cast<GLsizei>(layout.width),
                 static_cast<GLsizei>(layout.height), 0, GL_RGBA, GLChannelType(layout.bitDepth), pixels);
}

// Fills the storage with the host's 16-bit rows.
void UploadWidened(const std::byte* memory, const PixelLayout& layout) {
    const auto rowStride = static_cast<std::size_t>(layout.rowBytes);
    if (rowStride == 0) return;  // rows without a pixel
    const auto rowsPerBand = static_cast<std::uint32_t>(std::max<std::size_t>(1, kBandBytes / rowStride));
    std::vector<std::byte> widened(std::min(rowsPerBand, layout.height) * rowStride);
    for (std::uint32_t first = 0; first < layout.height; first += rowsPerBand) {
        PixelLayout band = layout;
        band.height = std::min(rowsPerBand, layout.height - first);
        expandTo16(memory + first * rowStride, band, widened.data());
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, static_cast<GLint>(first), static_cast<GLsizei>(band.width),
                        static_cast<GLsizei>(band.height), GL_RGBA, GLChannelType(band.bitDepth), widened.data());
    }
}

}  // namespace

std::uint32_t GLChannelType(std::uint32_t bitDepth) {
    switch (bitDepth) {
        case 15:
        case 16:
            return GL_UNSIGNED_SHORT;
        case 32:
            return GL_FLOAT;
        default:
            return GL_UNSIGNED_BYTE;
    }
}

void Texture::storeUpload(const std::byte* memory, const PixelLayout& layout, std::int32_t rowLength, bool expand) {
    const std::size_t copyBytes = layout.height * static_cast<std::size_t>(layout.rowBytes);
    const std::size_t readable = SourceBytes(layout);
    const bool isTaken = FitsGl(layout);
    const std::size_t read = isTaken ? BytesReadByGl(layout, rowLength) : 0;
    // Surfaces that share the copy see a picture of the same size arrive in it. Any other, and widened rows, come to
    // lie in new bytes, and the surfaces keep the old ones as they were.
    const bool arrivesInCopy = copy && copy.use_count() > 1 && copy->size() == copyBytes && !expand;
    if (!arrivesInCopy) copy.reset();
    // A row length that disagrees with the rows makes GL read on past the caller's memory.
    copyIsInGL = !copy && mayLeaveCopyInGL && textureName && isTaken && read <= readable;
    if (copyIsInGL && !expand) {
        SpecifyStorage(layout, memory);
        return;
    }
    if (copyIsInGL) {
        SpecifyStorage(layout, nullptr);
        UploadWidened(memory, layout);
        return;
    }

    if (!copy) copy = std::make_shared<std::vector<std::byte>>(copyBytes);
    if (expand)
        expandTo16(memory, layout, copy->data());
    else if (readable > 0)
        std::memmove(copy->data(), memory, readable);  // the memory may be the copy itself
    const std::byte* pixels = copy->data();
    std::vector<std::byte> padded;
    if (read > copy->size()) {
        padded.assign(copy->begin(), copy->end());
        padded.resize(read);
        pixels = padded.data();
    }
    SpecifyStorage(layout, pixels);
}

PixelBuffer Texture::pixelCopy() {
    if (!copy && copyIsInGL) copy = readBackUpload();
    copyIsInGL = false;
    return copy;
}

PixelBuffer Texture::readBackUpload() const {
    const std::size_t rowPixels = width * PixelBytes(bitDepth);
    const auto rowStride = static_cast<std::size_t>(rowBytes);
    std::vector<std::byte> tight(rowPixels * height);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    glBindTexture(GL_TEXTURE_2D, textureName.get());
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GLChannelType(bitDepth), tight.data());
    auto rows = std::make_shared<std::vector<std::byte>>(rowStride * height);
    const std::size_t kept = std::min(rowPixels, rowStride);
    for (std::uint32_t y = 0; y < height; ++y)
        std::memcpy(rows->data() + y * rowStride, tight.data() + y * rowPixels, kept);
    return rows;
}

bool Texture::initTexture(std::uint32_t columns, std::uint32_t rows, std::uint32_t bits, bool argbOrdered) {
    if (textureName) releaseGL();
    GLuint fresh = 0;
    glGenTextures(1, &fresh);
    textureName.reset(fresh);
    uploadPixels(nullptr, {columns, rows, bits, (columns * bits) >> 3}, argbOrdered, /*expand15=*/false);
    rowBytes = 0;
    return true;
}

void Texture::releaseGL() {
    pixelCopy();  // the storage goes, and the copy stays
    textureName.reset();
}

void Texture::uploadPixels(const void* source, const PixelLayout& given, bool argbOrdered, bool expand15) {
    PixelLayout layout = given;
    const auto* memory = static_cast<const std::byte*>(source);
    std::vector<std::byte> repacked;
    if (memory && layout.rowBytes < 0) {
        repacked = RepackDownwards(memory, layout);
        memory = repacked.data();
    }

    if (!memory) pixelCopy();  // the storage goes, and the copy stays

    const GLint rowLength = UnpackRowLength(layout);
    glBindTexture(GL_TEXTURE_2D, textureName.get());
    glPixelStorei(GL_UNPACK_ROW_LENGTH, rowLength);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
    glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_SWIZZLE_RGBA, argbOrdered ? kHostOrder : kRgbaOrder);

    if (memory)
        storeUpload(memory, layout, rowLength, layout.bitDepth == 16 && expand15);
    else
        SpecifyStorage(layout, nullptr);

    isArgbOrdered = argbOrdered;
    width = layout.width;
    height = layout.height;
    bitDepth = layout.bitDepth;
    rowBytes = layout.rowBytes;
}

int Texture::loadImage(const std::string& fileName) {
    const std::vector<std::byte> file = ReadFileBytes(WidenBytes(fileName));
    if (file.empty()) return 0;
    name = fileName;
    const DecodedImage image = DecodeImage(file);
    width = image.width;
    height = image.height;
    if (!image) return 0;
    // The storage starts in host order as every texture's; the upload then tells the file's.
    initTexture(image.width, image.height, image.bitDepth, /*isArgbOrdered=*/true);
    const PixelLayout layout{image.width, image.height, image.bitDepth, (image.width * image.bitDepth) >> 1};
    uploadPixels(image.pixels.get(), layout, /*argbOrdered=*/false, /*expand15=*/false);
    return 1;
}

void Texture::loadFromSurface(Surface& surface, bool flip) {
    const PixelLayout layout{surface.width, surface.height, surface.bitDepth,
                             static_cast<std::int64_t>(surface.rowBytes)};
    const std::byte* source = surface.pixelAddress();
    // An alias that tells of more than it holds has no picture to give.
    if (surface.rowBytes != 0 && surface.height > surface.byteSize() / surface.rowBytes) source = nullptr;
    std::vector<std::byte> flipped;
    if (source && flip) {
        flipped.resize(surface.height * surface.rowBytes);
        for (std::uint32_t y = 0; y < surface.height; ++y)
            std::memcpy(flipped.data() + (surface.height - 1 - y) * surface.rowBytes, source + y * surface.rowBytes,
                        surface.rowBytes);
        source = flipped.data();
    }
    uploadPixels(source, layout, /*argbOrdered=*/true, /*expand15=*/false);
}

void Texture::setParameter(std::uint32_t parameterName, std::int32_t value) {
    glBindTexture(GL_TEXTURE_2D, textureName.get());
    glTexParameteri(GL_TEXTURE_2D, parameterName, value);
}

}  // namespace quillon
