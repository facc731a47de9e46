#include "gpu/Texture.h"

#include <cmath>

#include "imagelib/Surface.h"
#include "package/BlobReader.h"
#include "support/GLTest.h"
#include "support/GuardedBytes.h"
#include "support/Pixels.h"
#include "support/TestEffect.h"

namespace quillon::test {
namespace {

class TextureTest : public GLTest {
protected:
    static GLint Level(GLenum what) {
        GLint value = 0;
        glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, what, &value);
        return value;
    }
    static std::vector<GLint> Swizzle() {
        std::vector<GLint> value(4);
        glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_SWIZZLE_RGBA, value.data());
        return value;
    }
    static GLint State(GLenum what) {
        GLint value = 0;
        glGetTexParameteriv(GL_TEXTURE_2D, what, &value);
        return value;
    }
    // The bound texture's storage, unswizzled.
    template <class Channel>
    static std::vector<Channel> Storage(GLenum type) {
        std::vector<Channel> value(static_cast<std::size_t>(4 * Level(GL_TEXTURE_WIDTH) * Level(GL_TEXTURE_HEIGHT)));
        glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, type, value.data());
        return value;
    }
    const std::vector<GLint> identity = {GL_RED, GL_GREEN, GL_BLUE, GL_ALPHA};
    const std::vector<GLint> fromRgba = {GL_ALPHA, GL_RED, GL_GREEN, GL_BLUE};
};

TEST_F(TextureTest, ChoosesStorageAndRowLengthByDepth) {
    constexpr struct {
        std::uint32_t bits;
        std::int64_t rowBytes;
        bool argbOrdered;
        GLint storageBits, storageType, rowLength;
    } kCases[] = {
        {8, 8, true, 8, GL_UNSIGNED_NORMALIZED, 2},
        {8, 12, false, 8, GL_UNSIGNED_NORMALIZED, 3},
        {16, 16, true, 32, GL_FLOAT, 2},
        {16, 40, true, 32, GL_FLOAT, 5},
        {32, 32, false, 32, GL_FLOAT, 2},
        {32, 48, true, 32, GL_FLOAT, 3},
        {15, 16, true, 32, GL_FLOAT, 4},
        {24, 24, true, 32, GL_FLOAT, 2},
        {4, 8, true, 8, GL_UNSIGNED_NORMALIZED, 0},
        {0, 0, true, 8, GL_UNSIGNED_NORMALIZED, 0},
    };
    Texture texture;
    texture.textureName.reset([] {
        GLuint name = 0;
        glGenTextures(1, &name);
        return name;
    }());
    const std::uint32_t name = texture.textureName.get();
    for (const auto& [bits, rowBytes, argbOrdered, storageBits, storageType, rowLength] : kCases) {
        SCOPED_TRACE(std::to_string(bits) + " bits, rows of " + std::to_string(rowBytes));
        texture.uploadPixels(nullptr, {2, 3, bits, rowBytes}, argbOrdered, false);
        EXPECT_EQ(Integer(GL_TEXTURE_BINDING_2D), static_cast<GLint>(name));
        EXPECT_EQ(Level(GL_TEXTURE_WIDTH), 2);
        EXPECT_EQ(Level(GL_TEXTURE_HEIGHT), 3);
        EXPECT_EQ(Level(GL_TEXTURE_RED_SIZE), storageBits);
        EXPECT_EQ(Level(GL_TEXTURE_ALPHA_SIZE), storageBits);
        EXPECT_EQ(Level(GL_TEXTURE_RED_TYPE), storageType);
        EXPECT_EQ(Integer(GL_UNPACK_ROW_LENGTH), rowLength) << "and it stays";
        EXPECT_EQ(Swizzle(), argbOrdered ? identity : fromRgba);
        EXPECT_EQ(texture.textureName.get(), name);
        EXPECT_EQ(texture.width, 2u);
        EXPECT_EQ(texture.height, 3u);
        EXPECT_EQ(texture.bitDepth, bits);
        EXPECT_EQ(texture.rowBytes, rowBytes);
        EXPECT_EQ(texture.isArgbOrdered, argbOrdered);
        EXPECT_EQ(texture.pixelCopy(), nullptr);
    }
}

TEST_F(TextureTest, ResetsFiltersAndWrappingAtEachUpload) {
    Texture texture;
    EXPECT_TRUE(texture.initTexture(2, 2, 8, true));
    EXPECT_EQ(texture.rowBytes, 0);
    for (const GLenum what : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER}) {
        EXPECT_EQ(State(what), GL_LINEAR);
        glTexParameteri(GL_TEXTURE_2D, what, GL_NEAREST);
    }
    for (const GLenum what : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T}) {
        EXPECT_EQ(State(what), GL_REPEAT);
        glTexParameteri(GL_TEXTURE_2D, what, GL_CLAMP_TO_EDGE);
    }
    texture.uploadPixels(nullptr, {2, 2, 8, 8}, true, false);
    for (const GLenum what : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER}) EXPECT_EQ(State(what), GL_LINEAR);
    for (const GLenum what : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T}) EXPECT_EQ(State(what), GL_REPEAT);
}

// The copy is read back from GL when somebody asks; nothing of the upload may be lost on that way.
TEST_F(TextureTest, GivesEveryValueOfAnUploadBack) {
    Bytes words(2 * 65536);
    for (std::uint32_t value = 0; value < 65536; ++value) {
        words[2 * value] = static_cast<std::byte>(value);
        words[2 * value + 1] = static_cast<std::byte>(value >> 8);
    }
    std::vector<float> reals;
    for (int exponent = -126; exponent < 128; ++exponent)
        for (const float mantissa : {1.0f, -1.0000001f, 1.9999999f, -1.3333334f})
            reals.push_back(std::ldexp(mantissa, exponent));
    const Bytes floats(reinterpret_cast<const std::byte*>(reals.data()),
                       reinterpret_cast<const std::byte*>(reals.data() + reals.size()));
    for (const auto& [bits, upload] : {std::pair{8u, words}, {16u, words}, {32u, floats}}) {
        for (const bool isArgb : {true, false}) {
            const auto height = static_cast<std::uint32_t>(upload.size() / (bits / 2) / 2);
            Texture texture;
            texture.initTexture(1, 1, 8, true);
            texture.uploadPixels(upload.data(), {2, height, bits, bits}, isArgb, false);
            EXPECT_EQ(*texture.pixelCopy(), upload) << bits;
            EXPECT_EQ(texture.pixelCopy(), texture.pixelCopy()) << "all who ask share one copy";
            const PixelBuffer held = texture.pixelCopy();
            texture.uploadPixels(upload.data() + 16, {1, 1, bits, bits / 2}, isArgb, false);
            EXPECT_EQ(held->front(), upload.front()) << "and keep it as it was when another size comes";
        }
    }
}

TEST_F(TextureTest, ShowsThoseWhoShareTheCopyAPictureOfTheSameSize) {
    const Bytes first = DistinctPicture(3, 2, 16), second = ReversedRows(first, 2);
    Texture texture;
    texture.initTexture(3, 2, 16, true);
    texture.uploadPixels(first.data(), {3, 2, 16, 24}, true, false);
    const PixelBuffer held = texture.pixelCopy();
    texture.uploadPixels(second.data(), {3, 2, 16, 24}, true, false);
    EXPECT_EQ(*held, second);
    EXPECT_EQ(texture.pixelCopy(), held);
    Surface alias;
    alias.init(3, 2, 16, true);
    alias.borrowedPixels = held;
    texture.loadFromSurface(alias, /*flip=*/false);
    EXPECT_EQ(texture.pixelCopy(), held) << "its own copy, put onto it, stays its copy";
    texture.loadFromSurface(alias, /*flip=*/true);
    EXPECT_EQ(*held, first);
    EXPECT_EQ(BytesOf(Storage<std::uint16_t>(GL_UNSIGNED_SHORT)), first);
    texture.uploadPixels(second.data(), {3, 2, 16, 24}, true, /*expand15=*/true);
    EXPECT_EQ(*held, first) << "widened rows are new ones";
}

TEST_F(TextureTest, WidensTheHostsSixteenBitsOnlyWhenAsked) {
    const Bytes host = BytesOf<std::uint16_t>({0, 1, 16383, 16384, 16385, 16386, 32767, 32768});
    Texture texture;
    texture.initTexture(2, 1, 16, true);
    texture.uploadPixels(host.data(), {2, 1, 16, 16}, true, true);
    const std::vector<std::uint16_t> widened = {0, 2, 32766, 32768, 32768, 32770, 65532, 65534};
    EXPECT_EQ(Storage<std::uint16_t>(GL_UNSIGNED_SHORT), widened);
    EXPECT_EQ(ChannelsOf<std::uint16_t>(*texture.pixelCopy()), widened);
    EXPECT_FLOAT_EQ(Storage<float>(GL_FLOAT)[7], 65534.0f / 65535.0f);
    texture.uploadPixels(host.data(), {2, 1, 16, 16}, true, false);
    EXPECT_EQ(Storage<std::uint16_t>(GL_UNSIGNED_SHORT), ChannelsOf<std::uint16_t>(host));
    EXPECT_EQ(*texture.pixelCopy(), host);
    const Bytes wrapping = BytesOf<std::uint16_t>({32769, 40000, 65535, 0});  // what no host should send
    texture.uploadPixels(wrapping.data(), {1, 1, 16, 8}, true, true);
    EXPECT_EQ(Storage<std::uint16_t>(GL_UNSIGNED_SHORT), (std::vector<std::uint16_t>{0, 14462, 65532, 0}));
    texture.uploadPixels(nullptr, {1, 1, 16, 8}, true, true);
    EXPECT_EQ(texture.pixelCopy()->size(), 8u) << "an upload without data leaves the copy";
}

TEST_F(TextureTest, KeepsItsNameOverExtentsAndDepths) {
    Texture texture;
    texture.initTexture(2, 2, 8, true);
    const std::uint32_t name = texture.textureName.get();
    const Bytes big = DistinctPicture(1920, 1080, 16);
    texture.uploadPixels(big.data(), {1920, 1080, 16, 1920 * 8}, true, false);
    EXPECT_EQ(texture.textureName.get(), name);
    EXPECT_EQ(texture.bitDepth, 16u);
    EXPECT_EQ(Level(GL_TEXTURE_HEIGHT), 1080);
    texture.releaseGL();
    EXPECT_FALSE(texture.textureName);
    EXPECT_EQ(glIsTexture(name), GL_FALSE);
    EXPECT_TRUE(*texture.pixelCopy() == big) << "the copy stays";
}

// Rows apart by more than their width, the last one without its padding, and rows that lie upwards in memory. A read
// of one byte too many faults.
TEST_F(TextureTest, ReadsPaddedAndUpwardRowsAndNotAByteMore) {
    for (const std::uint32_t bits : {8u, 16u, 32u})
        for (const bool expand : {false, true})
            for (const bool upwards : {false, true}) {
                SCOPED_TRACE(std::to_string(bits) + (upwards ? " upwards" : " downwards"));
                const Bytes picture = DistinctPicture(3, 2, bits);
                const std::size_t row = picture.size() / 2, apart = row + bits / 2;
                Bytes padded(apart, std::byte{0xEE});
                const Bytes inMemory = upwards ? ReversedRows(picture, 2) : picture;
                std::copy(inMemory.begin(), inMemory.begin() + static_cast<std::ptrdiff_t>(row), padded.begin());
                padded.insert(padded.end(), inMemory.begin() + static_cast<std::ptrdiff_t>(row), inMemory.end());
                const GuardedBytes memory(padded);
                const auto rowBytes = static_cast<std::int64_t>(apart);
                Texture texture;
                texture.initTexture(3, 2, bits, true);
                if (upwards)
                    texture.uploadPixels(memory.data() + apart, {3, 2, bits, -rowBytes}, true, expand);
                else
                    texture.uploadPixels(memory.data(), {3, 2, bits, rowBytes}, true, expand);
                if (bits == 8)
                    EXPECT_EQ(BytesOf(Storage<std::uint8_t>(GL_UNSIGNED_BYTE)), picture);
                else if (bits == 32)
                    EXPECT_EQ(BytesOf(Storage<float>(GL_FLOAT)), picture);
                else
                    EXPECT_EQ(InHostRange(BytesOf(Storage<std::uint16_t>(GL_UNSIGNED_SHORT)), expand ? 16 : 8),
                              picture);
                ASSERT_NE(texture.pixelCopy(), nullptr);
                EXPECT_GE(texture.pixelCopy()->size(), picture.size());
                if (!upwards) {
                    EXPECT_EQ(texture.pixelCopy()->size(), 2 * apart);
                }
            }
}

TEST_F(TextureTest, SurvivesFifteenBitsThoughTheyReadTwiceTheRows) {
    const Bytes picture = DistinctPicture(3, 2, 16);
    const GuardedBytes memory(picture);
    Texture texture;
    texture.initTexture(3, 2, 15, true);
    texture.uploadPixels(memory.data(), {3, 2, 15, 24}, true, false);
    const std::vector<std::uint16_t> stored = Storage<std::uint16_t>(GL_UNSIGNED_SHORT);
    const std::vector<std::uint16_t> given = ChannelsOf<std::uint16_t>(picture);
    EXPECT_TRUE(std::equal(stored.begin(), stored.begin() + 12, given.begin())) << "the first row is as it was";
}

TEST_F(TextureTest, LoadsAPictureOrStaysWithoutAName) {
    const std::string tga = {0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 1, 0, 32, 0x28, 30, 20, 10, 40};
    const TestEffect effect({{"one.tga", tga}, {"junk.png", "junk"}});
    BlobReader::Load(effect.module());
    Texture texture;
    EXPECT_EQ(texture.loadImage("one.tga"), 1);
    EXPECT_EQ(texture.name, "one.tga");
    EXPECT_FALSE(texture.isArgbOrdered);
    EXPECT_EQ(texture.bitDepth, 8u);
    EXPECT_EQ(texture.rowBytes, 4);
    EXPECT_EQ(Swizzle(), fromRgba);
    EXPECT_EQ(*texture.pixelCopy(), BytesOf<std::uint8_t>({10, 20, 30, 40}));
    for (const char* file : {"none.tga", "junk.png", ""}) {
        Texture none;
        EXPECT_EQ(none.loadImage(file), 0) << file;
        EXPECT_FALSE(none.textureName);
    }
}

TEST_F(TextureTest, TakesASurfaceUprightOrTurned) {
    Surface surface;
    surface.init(3, 2, 16, true);
    surface.pixels = DistinctPicture(3, 2, 16);
    Texture texture;
    texture.initTexture(1, 1, 8, true);
    for (const bool flip : {false, true}) {
        texture.loadFromSurface(surface, flip);
        EXPECT_EQ(BytesOf(Storage<std::uint16_t>(GL_UNSIGNED_SHORT)),
                  flip ? ReversedRows(surface.pixels, 2) : surface.pixels);
    }
    const Bytes borrowed = DistinctPicture(3, 2, 16);
    surface.pixels.clear();
    surface.borrowedPixels = std::make_shared<Bytes>(ReversedRows(borrowed, 2));
    texture.loadFromSurface(surface, false);
    EXPECT_EQ(BytesOf(Storage<std::uint16_t>(GL_UNSIGNED_SHORT)), ReversedRows(borrowed, 2));
    Surface empty;
    empty.init(4, 5, 8, true);
    texture.loadFromSurface(empty, true);
    EXPECT_EQ(Level(GL_TEXTURE_HEIGHT), 5);
}

}  // namespace
}  // namespace quillon::test
