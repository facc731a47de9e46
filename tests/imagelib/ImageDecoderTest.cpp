#include "imagelib/ImageDecoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "PictureFiles.h"

namespace quillon {
namespace {

using namespace test;

DecodedImage Decode(const Bytes& file) {
    // A block of exactly this size: the address sanitizer watches its end.
    return DecodeImage(std::as_bytes(std::span(file)));
}

Bytes PixelBytes(const DecodedImage& image) {
    Bytes pixels(std::size_t{4} * image.width * image.height * image.bitDepth / 8);
    std::memcpy(pixels.data(), image.pixels.get(), pixels.size());
    return pixels;
}

std::vector<float> PixelFloats(const DecodedImage& image) {
    std::vector<float> pixels(std::size_t{4} * image.width * image.height);
    std::memcpy(pixels.data(), image.pixels.get(), pixels.size() * sizeof(float));
    return pixels;
}

struct PictureCase {
    const char* name;
    Bytes file;
    std::uint32_t width;
    std::uint32_t height;
    Bytes pixels;  // red, green, blue, alpha, top row first
    int tolerance;
};

class Picture : public ::testing::TestWithParam<PictureCase> {};

TEST_P(Picture, ComesAsRgbaFromTheTop) {
    const DecodedImage image = Decode(GetParam().file);
    ASSERT_TRUE(image);
    EXPECT_EQ(image.width, GetParam().width);
    EXPECT_EQ(image.height, GetParam().height);
    EXPECT_EQ(image.bitDepth, 8u);
    const Bytes pixels = PixelBytes(image);
    ASSERT_EQ(pixels.size(), GetParam().pixels.size());
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        EXPECT_NEAR(pixels[i], GetParam().pixels[i], GetParam().tolerance) << "byte " << i;
    }
}

TEST_P(Picture, SurvivesEveryCutAndEveryDamagedByte) {
    const Bytes& file = GetParam().file;
    const auto expectSound = [](const DecodedImage& image) {
        if (!image) return;
        EXPECT_LE(std::uint64_t{4} * image.width * image.height * image.bitDepth / 8, std::uint64_t{1} << 30);
        PixelBytes(image);  // all of it is there: the address sanitizer watches
    };
    for (std::size_t length = 0; length < file.size(); ++length) {
        expectSound(Decode(Bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length))));
    }
    for (std::size_t i = 0; i < file.size(); ++i) {
        Bytes damaged = file;
        damaged[i] ^= 0x09;
        expectSound(Decode(damaged));
    }
}

const Bytes kFourPixels = {255, 0, 0, 255, 0, 255, 0, 128, 0, 0, 255, 0, 10, 20, 30, 40};

Bytes Flat(int pixels, const Bytes& pixel) {
    Bytes all;
    for (int i = 0; i < pixels; ++i) all.insert(all.end(), pixel.begin(), pixel.end());
    return all;
}

// A valid file whose pixels start in the second of its IDAT chunks; the first holds none.
Bytes WithEmptyChunk(Bytes png) {
    constexpr std::uint8_t kChunk[] = {0, 0, 0, 0, 'I', 'D', 'A', 'T', 0x35, 0xAF, 0x06, 0x1E};
    constexpr std::ptrdiff_t kAfterHeader = 33;
    png.insert(png.begin() + kAfterHeader, std::begin(kChunk), std::end(kChunk));
    return png;
}

const PictureCase kPictures[] = {
    {"png_rgba", WithEmptyChunk(PngFile(2, 2, 4, kFourPixels)), 2, 2, kFourPixels, 0},
    {"png_gray_is_opaque", PngFile(2, 1, 1, {7, 200}), 2, 1, {7, 7, 7, 255, 200, 200, 200, 255}, 0},
    {"jpeg", JpegFile(9, 5, 3, Flat(45, {200, 100, 50})), 9, 5, Flat(45, {200, 100, 50, 255}), 4},
    {"bmp_rows_from_the_bottom", BmpFile(1, 2, {1, 2, 3, 0, 4, 5, 6, 0}), 1, 2, {6, 5, 4, 255, 3, 2, 1, 255}, 0},
    {"tga_rows_from_the_bottom", TgaFile(1, 2, {1, 2, 3, 4, 5, 6}), 1, 2, {6, 5, 4, 255, 3, 2, 1, 255}, 0},
};

INSTANTIATE_TEST_SUITE_P(Formats, Picture, ::testing::ValuesIn(kPictures),
                         [](const auto& row) { return row.param.name; });

const Bytes kFlatBody = {128, 64, 0, 130, 255, 128, 1, 128};
// Two rows of eight pixels, packed: 2, 2, the width, then for each channel a run of eight, or eight single values.
const Bytes kPackedBody = {2,    2,   0, 8, 0x88, 128, 0x88, 64,  8,    0,  1,    2, 3,    4, 5,    6,  7,
                           0x88, 130, 2, 2, 0,    8,   0x88, 128, 0x88, 64, 0x84, 1, 0x84, 2, 0x88, 129};

TEST(RadiancePicture, KeepsValuesAboveOne) {
    const DecodedImage image = Decode(HdrFile(2, 1, kFlatBody));
    ASSERT_TRUE(image);
    EXPECT_EQ(image.bitDepth, 32u);
    EXPECT_EQ(PixelFloats(image), (std::vector<float>{2, 1, 0, 1, 255 / 256.0f, 0.5f, 1 / 256.0f, 1}));
}

TEST(RadiancePicture, ReadsPackedRows) {
    const DecodedImage image = Decode(HdrFile(8, 2, kPackedBody));
    ASSERT_TRUE(image);
    const std::vector<float> pixels = PixelFloats(image);
    const std::vector<float> last(pixels.end() - 4, pixels.end());
    EXPECT_EQ(std::vector<float>(pixels.begin() + 28, pixels.begin() + 32), (std::vector<float>{2, 1, 7 / 64.0f, 1}));
    EXPECT_EQ(last, (std::vector<float>{1, 0.5f, 2 / 128.0f, 1}));
}

TEST(RadiancePicture, IsRefusedWhenCutAnywhere) {
    for (const Bytes& file : {HdrFile(2, 1, kFlatBody), HdrFile(8, 2, kPackedBody)}) {
        for (std::size_t length = 0; length < file.size(); ++length) {
            EXPECT_FALSE(Decode(Bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length)))) << length;
        }
    }
}

TEST(RadiancePicture, RunsOfNothingEndTheFileAndNotTheProcess) {
    Bytes body = kPackedBody;
    body.resize(6);
    body.resize(5000, 0);
    EXPECT_FALSE(Decode(HdrFile(8, 2, body)));
    // A header line that is empty to a reader of C strings ends the header.
    const std::string header("#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\0\n-Y 2 +X 8\n", 46);
    Bytes file = Text(header);
    file.insert(file.end(), {2, 2, 0, 8, 0});
    EXPECT_FALSE(Decode(file));
    file.resize(header.size());
    file.insert(file.end(), kPackedBody.begin(), kPackedBody.end());
    EXPECT_TRUE(Decode(file));
}

TEST(RadiancePicture, TakesUnpackedRowsOfAnyWidth) {
    EXPECT_TRUE(Decode(HdrFile(8, 2, Flat(16, {200, 100, 50, 128}))));
    EXPECT_FALSE(Decode(HdrFile(8, 2, Flat(15, {200, 100, 50, 128}))));
}

// A segment of one Huffman table with 257 codes.
Bytes OverfullTables() {
    return Join({{0xFF, 0xC4}, WordBig(2 + 17 + 257), {0x00, 255, 2}, Bytes(14), Bytes(257)});
}

TEST(JpegPicture, IsRefusedWithAnOverfullTable) {
    const Bytes good = JpegFile(8, 8, 3, Flat(64, {200, 100, 50}));
    const Bytes startOfImage = {0xFF, 0xD8};
    const Bytes rest(good.begin() + 2, good.end());
    ASSERT_TRUE(Decode(good));
    EXPECT_FALSE(Decode(Join({startOfImage, OverfullTables(), rest})));
    EXPECT_FALSE(Decode(Join({startOfImage, {0xFF, 0xFF}, OverfullTables(), rest}))) << "fill bytes before the marker";
    EXPECT_FALSE(Decode(Join({{0xFF, 0xFF}, startOfImage, OverfullTables(), rest}))) << "fill bytes before the image";

    const Bytes second = {0x10, 255, 2};
    const Bytes twoTables =
        Join({{0xFF, 0xC4}, WordBig(2 + 17 + 17 + 257), {0x00}, Bytes(16), second, Bytes(14), Bytes(257)});
    EXPECT_FALSE(Decode(Join({startOfImage, twoTables, rest}))) << "the second table of a segment";

    // Behind a first scan.
    const Bytes end = {0xFF, 0xD9};
    ASSERT_TRUE(std::equal(end.begin(), end.end(), good.end() - 2));
    EXPECT_FALSE(Decode(Join({Bytes(good.begin(), good.end() - 2), OverfullTables(), end})));
}

TEST(JpegPicture, MayHoldAnyBytesWhereNoTablesAre) {
    const Bytes good = JpegFile(8, 8, 3, Flat(64, {200, 100, 50}));
    const Bytes profile = Join({{0xFF, 0xE2}, WordBig(2 + 2 + 2 + 17 + 257), OverfullTables()});
    EXPECT_TRUE(Decode(Join({{0xFF, 0xD8}, profile, Bytes(good.begin() + 2, good.end())})));
    EXPECT_TRUE(Decode(Join({good, OverfullTables()}))) << "after the end of the image";
}

struct RefusedCase {
    const char* name;
    Bytes file;
};

TEST(ImageDecoder, RefusesWhatIsNoPicture) {
    const RefusedCase kCases[] = {
        {"empty", {}},
        {"words", Text("there is no picture here, only words, and more of them than a header has")},
        {"softimage_picture", Join({{0x53, 0x80, 0xF6, 0x34}, Bytes(84), Text("PICT"), Bytes(200)})},
        {"negative_extent", HdrFile(-2, 1, Bytes(64))},
    };
    for (const RefusedCase& row : kCases) EXPECT_FALSE(Decode(row.file)) << row.name;
}

TEST(ImageDecoder, RefusesMoreThanAGibibyteOfPixels) {
    const RefusedCase kCases[] = {
        {"bmp", BmpFile(16385, 16384, Bytes(16))},
        {"tga", TgaFile(65535, 65535, Bytes(16))},
        {"hdr", HdrFile(8193, 8192, Bytes(16))},
    };
    for (const RefusedCase& row : kCases) {
        const DecodedImage image = Decode(row.file);
        EXPECT_FALSE(image) << row.name;
        EXPECT_NE(image.width, 0u) << row.name;
    }
}

}  // namespace
}  // namespace quillon
