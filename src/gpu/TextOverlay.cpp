#include "gpu/TextOverlay.h"

#include <GL/glew.h>

#include <iterator>
#include <string_view>

#include "gpu/GlyphTable.h"
#include "gpu/RenderTarget.h"

namespace quillon {

namespace {

constexpr int kLineHeight = 16;
constexpr int kLeftMargin = 5;
constexpr int kBaseline = 4;

// One display list for each code. Codes above these call lists that do not exist, which draws nothing.
constexpr int kLists = 128;
GLuint firstList = 0;

// How glBitmap is to read a glyph: tight rows, highest bit first.
struct UnpackSetting {
    GLenum name;
    GLint value;
};
constexpr UnpackSetting kUnpackSettings[] = {
    {GL_UNPACK_SWAP_BYTES, 0}, {GL_UNPACK_LSB_FIRST, 0},   {GL_UNPACK_ROW_LENGTH, 0},
    {GL_UNPACK_SKIP_ROWS, 0},  {GL_UNPACK_SKIP_PIXELS, 0}, {GL_UNPACK_ALIGNMENT, 1},
};

void DrawGlyph(const Glyph& glyph) {
    GLint before[std::size(kUnpackSettings)] = {};
    for (std::size_t i = 0; i < std::size(kUnpackSettings); ++i) {
        glGetIntegerv(kUnpackSettings[i].name, &before[i]);
        glPixelStorei(kUnpackSettings[i].name, kUnpackSettings[i].value);
    }
    glBitmap(glyph.width, Glyph::kHeight, 0, Glyph::kBelowBaseline, static_cast<float>(glyph.advance), 0,
             glyph.rows.data());
    for (std::size_t i = 0; i < std::size(kUnpackSettings); ++i) glPixelStorei(kUnpackSettings[i].name, before[i]);
}

void MakeLists() {
    firstList = glGenLists(kLists);
    if (firstList == 0) return;
    for (unsigned code = 0; code < kLists; ++code) {
        glNewList(firstList + code, GL_COMPILE);
        if (const Glyph& glyph = FindGlyph(code); glyph.width > 0) DrawGlyph(glyph);
        glEndList();
    }
}

void DrawLine(std::string_view line, int y) {
    glRasterPos2i(kLeftMargin, y);
    glCallLists(static_cast<GLsizei>(line.size()), GL_UNSIGNED_BYTE, line.data());
}

// From the top down, as many lines as there is height for. A run of line feeds ends one line, and what comes after
// the last line feed is not drawn.
void DrawLines(std::string_view text, int lineCount) {
    int y = kLineHeight * lineCount + kBaseline;
    while (lineCount > 0) {
        const std::size_t end = text.find('\n');
        if (end == std::string_view::npos) return;
        y -= kLineHeight;
        --lineCount;
        DrawLine(text.substr(0, end), y);
        const std::size_t next = text.find_first_not_of('\n', end);
        if (next == std::string_view::npos) return;
        text.remove_prefix(next);
    }
}

}  // namespace

void textOverlay(const std::string& text) {
    // Never initialized, and so the framebuffer 0 with no extent. That glOrtho refuses the empty range does no harm.
    static const RenderTarget kTarget;
    const int width = static_cast<int>(kTarget.width);
    const int height = static_cast<int>(kTarget.height);
    glBindFramebuffer(GL_FRAMEBUFFER, kTarget.framebufferName.get());
    glViewport(0, 0, width, height);

    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(0, width, 0, height, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glUseProgram(0);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, 0);
    glColor4f(1, 1, 1, 1);

    if (firstList == 0) MakeLists();
    glListBase(firstList);
    const int lineCount = height / kLineHeight;
    if (lineCount < 2) {
        DrawLine(text, kBaseline);
    } else {
        DrawLines(text, lineCount);
    }
}

void ForgetTextOverlay() {
    firstList = 0;
}

}  // namespace quillon
