#include "gpu/Texture.h"

#include <GL/glew.h>

#include <algorithm>
#include <cstring>

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

void SpecifyStorage(GLenum target, const PixelLayout& layout, const void* pixels) {
    glTexImage2D(target, 0, InternalFormat(layout.bitDepth), static_cast<GLsizei>(layout.width),
                 static_cast<GLsizei>(layout.height), 0, GL_RGBA, GLChannelType(layout.bitDepth), pixels);
}

// Whether the driver says that it can hold such a picture. The longest side is asked first: there are drivers that end
// the process over extents of 2^29.
bool DriverHolds(const PixelLayout& layout) {
    GLint longest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &longest);
    if (std::max(layout.width, layout.height) > static_cast<std::uint32_t>(longest)) return false;
    if (layout.width == 0 || layout.height == 0) return true;
    SpecifyStorage(GL_PROXY_TEXTURE_2D, layout, nullptr);
    GLint accepted = 0;
    glGetTexLevelParameteriv(GL_PROXY_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &accepted);
    return accepted != 0;
}

// Errors of earlier calls, which scripts can provoke, say nothing about the next one. Some systems report an error
// at every call while no context is current.
void ForgetGLErrors() {
    for (int i = 0; i < 16 && glGetError() != GL_NO_ERROR; ++i) {
    }
}

}  // namespace

bool Texture::Respecify(const PixelLayout& layout, const std::vector<std::byte>* rows) {
    ForgetGLErrors();
    if (DriverHolds(layout)) {
        const std::byte* pixels = rows ? rows->data() : nullptr;
        // A row length that disagrees with the rows makes GL read on after them: it finds zeros there.
        std::vector<std::byte> longer;
        if (rows && BytesReadByGL(layout) > rows->size()) {
            longer.reserve(BytesReadByGL(layout));
            longer = *rows;
            longer.resize(BytesReadByGL(layout));
            pixels = longer.data();
        }
        SpecifyStorage(GL_TEXTURE_2D, layout, pixels);
        // Memory for a large picture can be missing after all.
        if (glGetError() == GL_NO_ERROR) return true;
    }
    // The driver still has the storage of before, of another size: no pass may show that picture as this one.
    glTexImage2D(GL_TEXTURE_2D, 0, InternalFormat(layout.bitDepth), 0, 0, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    return false;
}

void Texture::keepCopy(const std::byte* source, const PixelLayout& layout, bool widen) {
    const std::size_t bytes = layout.height * static_cast<std::size_t>(KeptLayout(layout).rowBytes);
    // Surfaces that share the copy see a picture of as many bytes arrive in it. Any other picture, and widened rows,
    // get new memory, and the surfaces keep the old bytes as they were. Where nobody shares, the memory serves again:
    // fresh pages cost more than the copying.
    if (!copy || copy->size() != bytes || (widen && copy.use_count() > 1))
        copy = std::make_shared<std::vector<std::byte>>(bytes);
    KeepRows(source, layout, widen, *copy);
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
    textureName.reset();
    hasStorage = false;
}

void Texture::uploadPixels(const void* source, const PixelLayout& given, bool argbOrdered, bool expand15) {
    const PixelLayout layout = source ? KeptLayout(given) : given;
    if (source) keepCopy(static_cast<const std::byte*>(source), given, given.bitDepth == 16 && expand15);

    glBindTexture(GL_TEXTURE_2D, textureName.get());
    glPixelStorei(GL_UNPACK_ROW_LENGTH, UnpackRowLength(layout));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
    glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_SWIZZLE_RGBA, argbOrdered ? kHostOrder : kRgbaOrder);

    hasStorage = Respecify(layout, source ? copy.get() : nullptr);

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
    // New storage is in host order, as every texture's; the upload then sets the file's order.
    initTexture(image.width, image.height, image.bitDepth, /*argbOrdered=*/true);
    const PixelLayout layout{image.width, image.height, image.bitDepth, (image.width * image.bitDepth) >> 1};
    uploadPixels(image.pixels.get(), layout, /*argbOrdered=*/false, /*expand15=*/false);
    return 1;
}

void Texture::loadFromSurface(Surface& surface, bool flip) {
    const PixelLayout layout{surface.width, surface.height, surface.bitDepth,
                             static_cast<std::int64_t>(surface.rowBytes)};
    const std::byte* source = surface.pixelAddress();
    // An alias can claim more rows than it holds, and then has no picture to give.
    if (surface.rowBytes != 0 && surface.height > surface.byteSize() / surface.rowBytes) source = nullptr;
    std::vector<std::byte> flipped;
    if (source && flip && surface.rowBytes != 0) {
        flipped.resize(surface.height * surface.rowBytes);
        for (std::uint32_t y = 0; y < surface.height; ++y)
            std::memcpy(flipped.data() + (surface.height - 1 - y) * surface.rowBytes, source + y * surface.rowBytes,
                        surface.rowBytes);
        source = flipped.data();
    }
    uploadPixels(source, layout, /*argbOrdered=*/true, /*expand15=*/false);
}

void Texture::setParameter(std::uint32_t parameterName, std::int32_t value) {
    // Every base level above 0 means the same, a texture that has no such level. Some drivers look a high one up in
    // memory that they do not have.
    if (parameterName == GL_TEXTURE_BASE_LEVEL) value = std::min(value, 1);
    glBindTexture(GL_TEXTURE_2D, textureName.get());
    glTexParameteri(GL_TEXTURE_2D, parameterName, value);
}

}  // namespace quillon
