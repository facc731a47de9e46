#include "gpu/RenderTarget.h"

#include <GL/glew.h>

#include <vector>

#include "imagelib/UnitWords.h"
#include "platform/Truncation.h"

namespace quillon {

namespace {

// The one read-back buffer of the process. Its name is a fixed number that is never asked of GL: with a compatibility
// context the first binding makes it.
constexpr GLuint kPackBuffer = 4863;

// Makes the bound pack buffer hold `bytes`. A buffer of that size is kept from frame to frame, since the driver pays
// for fresh memory page by page. Where the read-back does not fill what the depth promises, the rest is zero.
void SizePackBuffer(std::uint64_t bytes, std::uint32_t bitDepth) {
    const auto size = static_cast<GLsizeiptr>(bytes);
    const bool isFilled = bitDepth == 8 || bitDepth == 16 || bitDepth == 32;
    if (!isFilled) {
        const std::vector<std::byte> zeros(bytes);
        glBufferData(GL_PIXEL_PACK_BUFFER, size, zeros.data(), GL_STREAM_READ);
        return;
    }
    GLint present = 0;  // cut for the largest
    glGetBufferParameteriv(GL_PIXEL_PACK_BUFFER, GL_BUFFER_SIZE, &present);
    if (present != size) glBufferData(GL_PIXEL_PACK_BUFFER, size, nullptr, GL_STREAM_READ);
}

}  // namespace

void RenderTarget::releaseGL() {
    Texture::releaseGL();
    framebufferName.reset();
}

bool RenderTarget::initTarget(std::uint32_t columns, std::uint32_t rows, std::uint32_t bits) {
    if (isUsable()) releaseGL();
    initTexture(columns, rows, bits, /*argbOrdered=*/true);
    GLuint fresh = 0;
    glGenFramebuffers(1, &fresh);
    framebufferName.reset(fresh);
    glBindFramebuffer(GL_FRAMEBUFFER, framebufferName.get());
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, textureName.get(), 0);
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    return isUsable();
}

void RenderTarget::bindTarget(const Viewport& viewport) {
    glBindFramebuffer(GL_FRAMEBUFFER, framebufferName.get());
    if (viewport.width > 0 && viewport.height > 0)
        glViewport(TruncateToInt32(viewport.x), TruncateToInt32(viewport.y), TruncateToInt32(viewport.width),
                   TruncateToInt32(viewport.height));
    else
        glViewport(0, 0, static_cast<GLsizei>(width), static_cast<GLsizei>(height));
}

void RenderTarget::blitTo(RenderTarget& destination, bool flip, bool linear) {
    const auto right = static_cast<GLint>(destination.width);
    const auto top = static_cast<GLint>(destination.height);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, framebufferName.get());
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, destination.framebufferName.get());
    glBlitFramebuffer(0, 0, static_cast<GLint>(width), static_cast<GLint>(height), 0, flip ? top : 0, right,
                      flip ? 0 : top, GL_COLOR_BUFFER_BIT, linear ? GL_LINEAR : GL_NEAREST);
}

const void* RenderTarget::mapPixels() {
    glBindFramebuffer(GL_FRAMEBUFFER, framebufferName.get());
    glViewport(0, 0, static_cast<GLsizei>(width), static_cast<GLsizei>(height));

    // The buffer's size is a product of 32 bits. A target whose bytes pass that cannot be read back.
    const std::uint32_t bytes = (height * width * bitDepth * 4) >> 3;
    const std::uint64_t pixels = std::uint64_t{width} * height;
    if (pixels > 0xFFFFFFFF || (pixels * bitDepth * 4) >> 3 != bytes) return nullptr;
    // GL would read nothing, and an earlier frame is still in the buffer.
    if (!storageExists()) return nullptr;

    // Words are made here of the floats that the storage has: drivers take several times as long for it.
    const bool makesWords = bitDepth == 16;
    glBindBuffer(GL_PIXEL_PACK_BUFFER, kPackBuffer);
    SizePackBuffer(makesWords ? pixels * sizeof(float[4]) : bytes, bitDepth);
    glReadBuffer(GL_COLOR_ATTACHMENT0);
    glReadPixels(0, 0, static_cast<GLsizei>(width), static_cast<GLsizei>(height), GL_RGBA,
                 makesWords ? GL_FLOAT : GLChannelType(bitDepth), nullptr);
    void* const mapped = glMapBuffer(GL_PIXEL_PACK_BUFFER, makesWords ? GL_READ_WRITE : GL_READ_ONLY);
    if (makesWords && mapped) WordsFromUnits(static_cast<std::byte*>(mapped), pixels * 4);
    return mapped;
}

void RenderTarget::unmapPixels() {
    glUnmapBuffer(GL_PIXEL_PACK_BUFFER);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
}

}  // namespace quillon
