#include "BareFrame.h"

#include <GL/glew.h>

#include <cstring>

namespace quillon::bench {

namespace {

constexpr const char* kVertex = "void main() { gl_Position = gl_Vertex; gl_TexCoord[0] = gl_MultiTexCoord0; }";
constexpr const char* kFragment =
    "uniform sampler2D picture;\n"
    "void main() { gl_FragColor = texture2D(picture, gl_TexCoord[0].st); }\n";

GLuint Compile(GLenum stage, const char* text) {
    const GLuint shader = glCreateShader(stage);
    glShaderSource(shader, 1, &text, nullptr);
    glCompileShader(shader);
    return shader;
}

GLenum ChannelType(std::uint32_t bitDepth) {
    return bitDepth == 8 ? GL_UNSIGNED_BYTE : bitDepth == 16 ? GL_UNSIGNED_SHORT : GL_FLOAT;
}

GLint InternalFormat(std::uint32_t bitDepth) {
    return bitDepth == 8 ? GL_RGBA : GL_RGBA32F;
}

GLuint MakeTexture(const FrameSize& size) {
    GLuint name = 0;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_2D, name);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glTexImage2D(GL_TEXTURE_2D, 0, InternalFormat(size.bitDepth), static_cast<GLsizei>(size.width),
                 static_cast<GLsizei>(size.height), 0, GL_RGBA, ChannelType(size.bitDepth), nullptr);
    return name;
}

void DrawQuad() {
    glBegin(GL_QUADS);
    glTexCoord2i(0, 0), glVertex3i(-1, -1, 0);
    glTexCoord2i(1, 0), glVertex3i(1, -1, 0);
    glTexCoord2i(1, 1), glVertex3i(1, 1, 0);
    glTexCoord2i(0, 1), glVertex3i(-1, 1, 0);
    glEnd();
}

}  // namespace

BareFrame::BareFrame(FrameSize frameSize) : size(frameSize) {
    if (size.bitDepth == 16) widened.resize(size.bytes() / 2);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    inputTexture = MakeTexture(size);
    outputTexture = MakeTexture(size);
    glGenFramebuffers(1, &framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, outputTexture, 0);
    program = glCreateProgram();
    glAttachShader(program, Compile(GL_VERTEX_SHADER, kVertex));
    glAttachShader(program, Compile(GL_FRAGMENT_SHADER, kFragment));
    glLinkProgram(program);
    glGenBuffers(1, &packBuffer);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, packBuffer);
    glBufferData(GL_PIXEL_PACK_BUFFER, static_cast<GLsizeiptr>(size.bytes()), nullptr, GL_STREAM_READ);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
}

BareFrame::~BareFrame() {
    glDeleteTextures(1, &inputTexture);
    glDeleteTextures(1, &outputTexture);
    glDeleteFramebuffers(1, &framebuffer);
    glDeleteProgram(program);
    glDeleteBuffers(1, &packBuffer);
}

void BareFrame::render(const std::byte* input, std::byte* output) {
    const void* pixels = input;
    if (size.bitDepth == 16) {
        const auto* values = reinterpret_cast<const std::uint16_t*>(input);
        for (std::size_t i = 0; i < widened.size(); ++i) {
            std::uint16_t value = values[i];
            if (value > 16384) --value;
            widened[i] = static_cast<std::uint16_t>(value * 2);
        }
        pixels = widened.data();
    }
    const auto width = static_cast<GLsizei>(size.width);
    const auto height = static_cast<GLsizei>(size.height);
    const GLenum type = ChannelType(size.bitDepth);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    glBindTexture(GL_TEXTURE_2D, inputTexture);
    glTexImage2D(GL_TEXTURE_2D, 0, InternalFormat(size.bitDepth), width, height, 0, GL_RGBA, type, pixels);

    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glViewport(0, 0, width, height);
    glUseProgram(program);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, inputTexture);
    DrawQuad();

    glBindBuffer(GL_PIXEL_PACK_BUFFER, packBuffer);
    glReadPixels(0, 0, width, height, GL_RGBA, type, nullptr);
    const auto* mapped = static_cast<const std::byte*>(glMapBuffer(GL_PIXEL_PACK_BUFFER, GL_READ_ONLY));
    for (std::uint32_t y = 0; y < size.height; ++y) {
        const std::byte* from = mapped + y * size.rowBytes();
        std::byte* to = output + (size.height - 1 - y) * size.rowBytes();
        if (size.bitDepth != 16) {
            std::memcpy(to, from, size.rowBytes());
            continue;
        }
        const auto* values = reinterpret_cast<const std::uint16_t*>(from);
        auto* folded = reinterpret_cast<std::uint16_t*>(to);
        for (std::size_t i = 0; i < size.width * std::size_t{4}; ++i)
            folded[i] = static_cast<std::uint16_t>((values[i] >> 1) + (values[i] > 32768 ? 1 : 0));
    }
    glUnmapBuffer(GL_PIXEL_PACK_BUFFER);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
}

}  // namespace quillon::bench
