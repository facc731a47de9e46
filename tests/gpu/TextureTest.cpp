#include "gpu/Texture.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "imagelib/Surface.h"
#include "support/GLTest.h"
#include "support/GuardedBytes.h"
#include "support/Pixels.h"

namespace quillon::test {
namespace {

// As GL reads it.
std::size_t BytesOfPixel(std::uint32_t bits) {
    return bits == 32 ? 16 : bits == 15 || bits == 16 ? 8 : 4;
}

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
    static Bytes Stored(std::uint32_t bits) {
        if (BytesOfPixel(bits) == 16) return BytesOf(Storage<float>(GL_FLOAT));
        if (BytesOfPixel(bits) == 8) return BytesOf(Storage<std::uint16_t>(GL_UNSIGNED_SHORT));
        return BytesOf(Storage<std::uint8_t>(GL_UNSIGNED_BYTE));
    }
    const std::vector<GLint> identity = {GL_RED, GL_GREEN, GL_BLUE, GL_ALPHA};
    const std::vector<GLint> fromRgba = {GL_ALPHA, GL_RED, GL_GREEN, GL_BLUE};
};

TEST_F(TextureTest, ChoosesStorageByDepth) {
    constexpr struct {
        std::uint32_t bits;
        std::int64_t rowBytes;
        bool argbOrdered;
        GLint storageBits, storageType;
    } kDepths[] = {
        {8, 12, true, 8, GL_UNSIGNED_NORMALIZED},
        {8, 8, false, 8, GL_UNSIGNED_NORMALIZED},
        {16, 40, true, 32, GL_FLOAT},
        {32, 48, false, 32, GL_FLOAT},
        {15, 16, true, 32, GL_FLOAT},
        {24, 24, true, 32, GL_FLOAT},
        {4, 8, true, 8, GL_UNSIGNED_NORMALIZED},
        {0, 0, true, 8, GL_UNSIGNED_NORMALIZED},
    };
    Texture texture;
    texture.initTexture(1, 1, 8, true);
    const std::uint32_t name = texture.textureName.get();
    for (const auto& [bits, rowBytes, argbOrdered, storageBits, storageType] : kDepths) {
        SCOPED_TRACE(std::to_string(bits) + " bits, rows of " + std::to_string(rowBytes));
        texture.uploadPixels(nullptr, {2, 3, bits, rowBytes}, argbOrdered, false);
        EXPECT_EQ(Integer(GL_TEXTURE_BINDING_2D), static_cast<GLint>(name));
        for (const auto& [what, value] : {std::pair{GL_TEXTURE_WIDTH, 2},
                                          {GL_TEXTURE_HEIGHT, 3},
                                          {GL_TEXTURE_RED_SIZE, storageBits},
                                          {GL_TEXTURE_ALPHA_SIZE, storageBits},
                                          {GL_TEXTURE_RED_TYPE, storageType}})
            EXPECT_EQ(Level(static_cast<GLenum>(what)), value) << what;
        EXPECT_EQ(Swizzle(), argbOrdered ? identity : fromRgba);
        EXPECT_EQ(texture.textureName.get(), name);
        EXPECT_TRUE(texture.width == 2 && texture.height == 3 && texture.bitDepth == bits);
        EXPECT_TRUE(texture.rowBytes == rowBytes && texture.isArgbOrdered == argbOrdered);
        EXPECT_EQ(texture.pixelCopy(), nullptr);
    }
}

TEST_F(TextureTest, ResetsFiltersAndWrappingAtEachUpload) {
    constexpr std::pair<GLenum, GLint> kStates[] = {{GL_TEXTURE_MIN_FILTER, GL_LINEAR},
                                                    {GL_TEXTURE_MAG_FILTER, GL_LINEAR},
                                                    {GL_TEXTURE_WRAP_S, GL_REPEAT},
                                                    {GL_TEXTURE_WRAP_T, GL_REPEAT}};
    Texture texture;
    EXPECT_TRUE(texture.initTexture(2, 2, 8, true));
    EXPECT_EQ(texture.rowBytes, 0);
    for (int upload = 0; upload < 2; ++upload) {
        for (const auto& [what, fresh] : kStates) {
            EXPECT_EQ(State(what), fresh);
            glTexParameteri(GL_TEXTURE_2D, what, fresh == GL_LINEAR ? GL_NEAREST : GL_CLAMP_TO_EDGE);
        }
        texture.uploadPixels(nullptr, {2, 2, 8, 8}, true, false);
    }
}

// The rows of an upload: how far apart they are, and in which direction.
struct RowsCase {
    std::uint32_t width, height, bits;
    std::int64_t rowBytes;
};

constexpr RowsCase kRowsCases[] = {
    {3, 2, 8, 12},  {3, 2, 8, 16},       {3, 2, 8, -12},      {3, 2, 8, -20},        {1, 2, 8, 5},    {3, 5, 8, 14},
    {3, 3, 8, 8},   {2, 3, 8, 3},        {3, 2, 16, 24},      {3, 2, 16, 32},        {3, 2, 16, -24}, {3, 2, 16, -40},
    {3, 5, 16, 27}, {2, 3, 16, 10},      {3, 2, 32, 48},      {3, 2, 32, 64},        {3, 2, 32, -48}, {3, 4, 32, -80},
    {3, 5, 32, 52}, {33, 1200, 16, 268}, {300, 300, 8, 1200}, {300, 300, 32, -4816}, {3, 4, 15, 24},  {4, 3, 15, 30},
    {5, 1, 8, 400}, {0, 4, 8, 16},       {0, 4, 16, 0},       {4, 0, 16, 32},        {2, 2, 4, 8},    {1, 1, 16, 8},
};

// Bytes that make ordinary floats, wherever four of them are read as one.
Bytes SomeBytes(std::size_t count) {
    Bytes bytes(count);
    std::uint32_t state = 7;
    for (std::byte& byte : bytes) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<std::byte>(0x20 + (state >> 27));
    }
    return bytes;
}

// The memory has the rows' bytes and no padding after the row that is last in it: a read of one byte more faults.
TEST_F(TextureTest, TakesRowsOfAnyDistanceAndNotAByteMore) {
    Texture texture;
    texture.initTexture(1, 1, 8, true);
    for (const auto& [width, height, bits, rowBytes] : kRowsCases)
        for (const bool widens : {false, true}) {
            if (widens && bits != 16) continue;
            SCOPED_TRACE(testing::Message() << width << "x" << height << ", " << bits << " bits, rows of " << rowBytes
                                            << (widens ? " widened" : ""));
            const std::size_t pixel = BytesOfPixel(bits), apart = static_cast<std::size_t>(std::abs(rowBytes));
            const std::size_t used = std::min(width * pixel, apart), rows = height;
            const GuardedBytes memory(SomeBytes(rows == 0 ? 0 : (rows - 1) * apart + used));
            const std::byte* top = memory.data() + (rowBytes < 0 ? (rows - 1) * apart : 0);
            texture.uploadPixels(used == 0 ? nullptr : top, {width, height, bits, rowBytes}, true, widens);
            if (used == 0) texture.uploadPixels(top, {width, height, bits, rowBytes}, true, widens);

            // What the copy is: the memory as it is, or tight rows where they were the other way round.
            const std::size_t kept = rowBytes < 0 ? width * pixel : apart;
            Bytes copy(rows * kept);
            for (std::size_t y = 0; y < rows; ++y) {
                const bool hasPadding = used != 0 && rowBytes >= 0 && !widens && y + 1 < rows;
                for (std::size_t i = 0; i < (hasPadding ? kept : used); ++i)
                    copy[y * kept + i] =
                        top[static_cast<std::ptrdiff_t>(y) * rowBytes + static_cast<std::ptrdiff_t>(i)];
                for (std::size_t i = 0; widens && i < used / 2 * 2; i += 2) {
                    std::uint16_t value = 0;
                    std::memcpy(&value, &copy[y * kept + i], 2);
                    value = static_cast<std::uint16_t>((value > 16384 ? value - 1 : value) * 2);
                    std::memcpy(&copy[y * kept + i], &value, 2);
                }
                if (widens && used % 2 != 0) copy[y * kept + used - 1] = std::byte{};
            }
            EXPECT_TRUE(*texture.pixelCopy() == copy);
            EXPECT_EQ(texture.rowBytes, static_cast<std::int64_t>(kept));

            // What GL has: whole pixels apart, zeros where the rows end too early for that.
            const std::size_t row = kept / (bits < 8 ? 1 : bits / 8) / 4;
            Bytes stored;
            for (std::size_t y = 0; y < rows; ++y)
                for (std::size_t i = 0; i < width * pixel; ++i) {
                    const std::size_t at = y * (bits < 8 || row == 0 ? width : row) * pixel + i;
                    stored.push_back(at < copy.size() ? copy[at] : std::byte{});
                }
            EXPECT_TRUE(Stored(bits) == stored);
        }
}

TEST_F(TextureTest, KeepsTheBytesOfTheLastUploadThatHadAny) {
    const Bytes picture = DistinctPicture(3, 2, 16);
    Texture texture;
    texture.initTexture(2, 2, 8, true);
    EXPECT_EQ(texture.pixelCopy(), nullptr);
    const std::uint32_t name = texture.textureName.get();
    texture.uploadPixels(picture.data(), {3, 2, 16, 24}, true, false);
    const PixelBuffer held = texture.pixelCopy();
    // The copy does not depend on GL's storage: drawn over, specified anew, refused, gone.
    const std::uint16_t black[4] = {};
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_SHORT, black);
    EXPECT_EQ(*texture.pixelCopy(), picture);
    for (const std::uint32_t width : {3u, 40u, 536870912u}) {
        texture.uploadPixels(nullptr, {width, 2, 16, 24}, true, true);
        EXPECT_EQ(texture.textureName.get(), name);
        EXPECT_EQ(*texture.pixelCopy(), picture) << width;
    }
    texture.releaseGL();
    EXPECT_FALSE(texture.textureName);
    EXPECT_EQ(glIsTexture(name), GL_FALSE);
    EXPECT_EQ(texture.pixelCopy(), held);
    texture.initTexture(2, 2, 8, true);
    texture.uploadPixels(picture.data(), {1, 1, 8, 4}, true, false);
    EXPECT_EQ(*held, picture) << "surfaces keep it when a picture of another size comes";
    EXPECT_EQ(texture.pixelCopy()->size(), 4u);
}

TEST_F(TextureTest, HasNoStorageWhereTheDriverRefusesIt) {
    const Bytes picture = DistinctPicture(2, 2, 8);
    Texture texture;
    texture.initTexture(2, 2, 8, true);
    for (const auto& [width, height, bits] : {std::array{536870912u, 1u, 8u},
                                              {1u, 536870912u, 8u},
                                              {0x7FFFFFFFu, 10u, 8u},
                                              {0xFFFFFFFFu, 0xFFFFFFFFu, 32u},
                                              {1000000u, 1u, 16u},
                                              {16384u, 16384u, 32u}}) {
        texture.uploadPixels(picture.data(), {2, 2, 8, 8}, true, false);
        EXPECT_TRUE(texture.storageExists());
        EXPECT_EQ(Level(GL_TEXTURE_WIDTH), 2);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WIDTH, 1);  // an earlier error
        texture.uploadPixels(nullptr, {width, height, bits, 8}, true, false);
        EXPECT_EQ(texture.width, width);
        EXPECT_EQ(Level(GL_TEXTURE_WIDTH), texture.storageExists() ? static_cast<GLint>(width) : 0);
        if (width > 100000 || height > 100000) {
            EXPECT_FALSE(texture.storageExists());
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

}  // namespace
}  // namespace quillon::test
