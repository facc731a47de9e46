#include <GL/glew.h>

#include <cmath>

#include "entities/Context.h"
#include "support/EngineTest.h"
#include "support/Pixels.h"

namespace quillon::test {
namespace {

// An uncompressed TGA file, top row first, of pixels R, G, B, A.
std::string Tga(std::uint8_t width, std::uint8_t height, const std::vector<std::uint8_t>& rgba) {
    std::string file = {0, 0,  2,   0, 0, 0, 0, 0, 0, 0, 0, 0, static_cast<char>(width), 0, static_cast<char>(height),
                        0, 32, 0x28};
    for (std::size_t i = 0; i < rgba.size(); i += 4)
        for (const std::size_t channel : {2, 1, 0, 3}) file += static_cast<char>(rgba[i + channel]);
    return file;
}

const std::vector<std::uint8_t> kRgba = {10, 20, 30, 40, 50, 60, 70, 80, 90, 100, 110, 120, 130, 140, 150, 160};

// A Radiance file of one pixel: red 1.0, green 0.5, blue 2.0.
const std::string kHdr("#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 1 +X 1\n\x40\x20\x80\x82");

class TextureApi : public EngineTest {
protected:
    void SetUp() override {
        start(
            "var copy, layer, picture;\n"
            "function setup() { copy = QL_initShader('copy'); layer = QL_initParam('l', 4, 'L'); }\n"
            "function draw() { if (!picture) return;\n"
            "  QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);\n"
            "  QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);\n"
            "  QL_setShaderParamVal(copy, 'sInput0', picture);\n"
            "  QL_renderShader(copy, QL_getSequenceRT(), false); }\n",
            {{"copy.frag", kCopyFragment},
             {"four.tga", Tga(2, 2, kRgba)},
             {"bright.hdr", kHdr},
             {"junk.png", "no picture"}});
        addInstance();
    }
};

TEST_F(TextureApi, LoadsPicturesOfThePackage) {
    expectValues({
        {"[QL_initTexture(), QL_getSurfaceDim(67108866)]", "[0,false]"},
        {"QL_initTexture('four.tga')", "67108866"},
        {"QL_getSurfaceDim(67108866)", "[2,2,8]"},
        {"QL_getSurfaceDim(QL_initTexture('Four.TGA', 'ignored'))", "[2,2,8]"},
        {"QL_getSurfaceDim(QL_initTexture('bright.hdr'))", "[1,1,32]"},
        {"QL_initTexture('none.png')", "67108869"},
        {"QL_getSurfaceDim(67108869)", "false"},
        {"QL_getSurfaceDim(QL_initTexture('junk.png'))", "false"},
        {"QL_initTexture('four.tga', {toString: function () { throw 'asked'; }})", "throws asked"},
    });
}

TEST_F(TextureApi, ShowsAFilesChannelsToShadersAndHostAlike) {
    eval("picture = QL_initTexture('four.tga')");
    std::vector<std::uint8_t> argb;
    for (std::size_t i = 0; i < kRgba.size(); i += 4)
        for (const std::size_t channel : {3, 0, 1, 2}) argb.push_back(kRgba[i + channel]);
    EXPECT_EQ(ChannelsOf<std::uint8_t>(frame(2, 2, 8)), argb);
    eval("picture = QL_initTexture('bright.hdr')");
    EXPECT_EQ(ChannelsOf<float>(frame(1, 1, 32)), (std::vector<float>{1.0f, 1.0f, 0.5f, 2.0f}));
}

TEST_F(TextureApi, PassesTextureStateToGLForAnyIdThatHasATexture) {
    expectValues({
        {"(rt = QL_initRenderTarget(2, 2, 8), pic = QL_initTexture('four.tga'), 0)", "0"},
        {"[rt, pic, layer, QL_getParamValue(layer)].every(function (id) {"
         " return QL_setTextureParam(id, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST)"
         " && QL_setTextureParam(id, QL_GL.TEXTURE_WRAP_S, '33071.9'); })",
         "true"},
        {"[0, 5, 0x40000FF, 0x30000FF, 0x10000FF, copy, QL_initTexture('none'), QL_initParam('t', 6, ''),"
         " 0x5000001, -1, QL_initSurface(1, 1, 8)].some(function (id) {"
         " return QL_setTextureParam(id, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST); })",
         "false"},
        {"QL_setTextureParam(pic, 12345, 1)", "true"},
    });
    ASSERT_TRUE(engine.lockGL());
    Context& entities = Context::Instance();
    GLint bound = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
    const std::uint32_t names[] = {entities.FindRenderTarget(0x3000001).textureName.get(),
                                   entities.FindTexture(0x4000001).textureName.get(),
                                   entities.FindTexture(0x4000002).textureName.get()};
    EXPECT_EQ(static_cast<std::uint32_t>(bound), names[2]) << "the last one stays";
    for (const std::uint32_t name : names) {
        GLint filter = 0, wrap = 0;
        glBindTexture(GL_TEXTURE_2D, name);
        glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, &filter);
        glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, &wrap);
        EXPECT_TRUE(filter == GL_NEAREST && wrap == GL_CLAMP_TO_EDGE) << filter << ' ' << wrap;
    }
    engine.unlockGL();
}

}  // namespace
}  // namespace quillon::test
