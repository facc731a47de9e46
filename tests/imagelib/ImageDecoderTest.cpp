#include "imagelib/ImageDecoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#define STBI_WRITE_NO_STDIO
#include <stb/stb_image_write.h>

namespace quillon {
namespace {

using Bytes = std::vector<std::uint8_t>;

void Append(void* file, void* data, int size) {
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    static_cast<Bytes*>(file)->insert(static_cast<Bytes*>(file)->end(), bytes, bytes + size);
}

Bytes Join(std::initializer_list<Bytes> parts) {
    Bytes all;
    for (const Bytes& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

Bytes Text(const std::string& text) {
    return Bytes(text.begin(), text.end());
}

// Little-endian, unless the name says otherwise.
Bytes Word(unsigned value) {
    return {static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8)};
}

Bytes WordBig(unsigned value) {
    return {static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)};
}

Bytes Long(std::uint32_t value) {
    return Join({Word(value & 0xFFFF), Word(value >> 16)});
}

Bytes PngFile(int width, int height, int channels, const Bytes& pixels) {
    Bytes file;
    stbi_write_png_to_func(Append, &file, width, height, channels, pixels.data(), width * channels);
    return file;
}

Bytes JpegFile(int width, int height, int channels, const Bytes& pixels) {
    Bytes file;
    stbi_write_jpg_to_func(Append, &file, width, height, channels, pixels.data(), 95);
    return file;
}

// 24 bits a pixel; `body` is what follows the header, bottom row first.
Bytes BmpFile(std::uint32_t width, std::uint32_t height, const Bytes& body) {
    constexpr std::uint32_t kHeader = 54;
    return Join({Text("BM"), Long(kHeader + static_cast<std::uint32_t>(body.size())), Long(0), Long(kHeader), Long(40),
                 Long(width), Long(height), Word(1), Word(24), Bytes(24), body});
}

Bytes HdrFile(int width, int height, const Bytes& body) {
    const std::string extent = "-Y " + std::to_string(height) + " +X " + std::to_string(width) + "\n";
    return Join({Text("#?RADIANCE\n# a comment\nFORMAT=32-bit_rle_rgbe\n\n" + extent), body});
}

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

struct PictureCase {
    const char* name;
    Bytes file;
    std::uint32_t width, height;
    Bytes pixels;  // red, green, blue, alpha, top row first
    int tolerance;
};

const PictureCase kPictures[] = {
    {"PNG", WithEmptyChunk(PngFile(2, 2, 4, kFourPixels)), 2, 2, kFourPixels, 0},
    {"gray PNG, which is opaque", PngFile(2, 1, 1, {7, 200}), 2, 1, {7, 7, 7, 255, 200, 200, 200, 255}, 0},
    {"JPEG", JpegFile(9, 5, 3, Flat(45, {200, 100, 50})), 9, 5, Flat(45, {200, 100, 50, 255}), 4},
    {"BMP", BmpFile(1, 2, {1, 2, 3, 0, 4, 5, 6, 0}), 1, 2, {6, 5, 4, 255, 3, 2, 1, 255}, 0},
};

TEST(ImageDecoder, GivesRgbaFromTheTop) {
    for (const PictureCase& row : kPictures) {
        const DecodedImage image = Decode(row.file);
        ASSERT_TRUE(image) << row.name;
        EXPECT_EQ(image.width, row.width) << row.name;
        EXPECT_EQ(image.height, row.height) << row.name;
        EXPECT_EQ(image.bitDepth, 8u) << row.name;
        const Bytes pixels = PixelBytes(image);
        ASSERT_EQ(pixels.size(), row.pixels.size()) << row.name;
        for (std::size_t i = 0; i < pixels.size(); ++i)
            EXPECT_NEAR(pixels[i], row.pixels[i], row.tolerance) << row.name << ", byte " << i;
    }
}

TEST(ImageDecoder, SurvivesEveryCutAndEveryDamagedByte) {
    const auto expectSound = [](const DecodedImage& image) {
        if (!image) return;
        EXPECT_LE(std::uint64_t{4} * image.width * image.height * image.bitDepth / 8, std::uint64_t{1} << 30);
        PixelBytes(image);  // all of it is there: the address sanitizer watches
    };
    for (const PictureCase& row : kPictures)
        for (std::size_t i = 0; i < row.file.size(); ++i) {
            expectSound(Decode(Bytes(row.file.begin(), row.file.begin() + static_cast<std::ptrdiff_t>(i))));
            Bytes damaged = row.file;
            damaged[i] ^= 0x09;
            expectSound(Decode(damaged));
        }
}

const Bytes kFlatBody = {128, 64, 0, 130, 255, 128, 1, 128};
// Two rows of eight pixels, packed: 2, 2, the width, then for each channel a run of eight, or eight single values.
const Bytes kPackedBody = {2,    2,   0, 8, 0x88, 128, 0x88, 64,  8,    0,  1,    2, 3,    4, 5,    6,  7,
                           0x88, 130, 2, 2, 0,    8,   0x88, 128, 0x88, 64, 0x84, 1, 0x84, 2, 0x88, 129};

TEST(RadiancePicture, KeepsValuesAboveOneFlatOrPacked) {
    const DecodedImage flat = Decode(HdrFile(2, 1, kFlatBody));
    ASSERT_TRUE(flat);
    EXPECT_EQ(flat.bitDepth, 32u);
    EXPECT_EQ(PixelFloats(flat), (std::vector<float>{2, 1, 0, 1, 255 / 256.0f, 0.5f, 1 / 256.0f, 1}));
    const DecodedImage packed = Decode(HdrFile(8, 2, kPackedBody));
    ASSERT_TRUE(packed);
    const std::vector<float> pixels = PixelFloats(packed);
    EXPECT_EQ(std::vector<float>(pixels.begin() + 28, pixels.begin() + 32), (std::vector<float>{2, 1, 7 / 64.0f, 1}));
    EXPECT_EQ(std::vector<float>(pixels.end() - 4, pixels.end()), (std::vector<float>{1, 0.5f, 2 / 128.0f, 1}));
}

TEST(RadiancePicture, IsRefusedWhereverItEndsTooEarly) {
    for (const Bytes& file : {HdrFile(2, 1, kFlatBody), HdrFile(8, 2, kPackedBody)})
        for (std::size_t length = 0; length < file.size(); ++length)
            EXPECT_FALSE(Decode(Bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length)))) << length;
    EXPECT_TRUE(Decode(HdrFile(8, 2, Flat(16, {200, 100, 50, 128})))) << "rows that could be packed, and are not";
    EXPECT_FALSE(Decode(HdrFile(8, 2, Flat(15, {200, 100, 50, 128}))));
    Bytes runsOfNothing = kPackedBody;
    runsOfNothing.resize(6);
    runsOfNothing.resize(5000, 0);
    EXPECT_FALSE(Decode(HdrFile(8, 2, runsOfNothing)));
    // A header line that is empty to a reader of C strings ends the header.
    const Bytes header = Text(std::string("#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\0\n-Y 2 +X 8\n", 46));
    EXPECT_FALSE(Decode(Join({header, {2, 2, 0, 8, 0}})));
    EXPECT_TRUE(Decode(Join({header, kPackedBody})));
}

// A segment of one Huffman table with 257 codes, all of which differ.
Bytes OverfullTable() {
    return Join({{0xFF, 0xC4}, WordBig(2 + 17 + 257), {0x00}, Bytes(14), {2, 255}, Bytes(257)});
}

TEST(JpegPicture, IsRefusedOnlyWithAnOverfullTable) {
    const Bytes good = JpegFile(8, 8, 3, Flat(64, {200, 100, 50}));
    const Bytes start = {0xFF, 0xD8}, end = {0xFF, 0xD9};
    const Bytes rest(good.begin() + 2, good.end()), unfinished(good.begin(), good.end() - 2);
    ASSERT_TRUE(std::equal(end.begin(), end.end(), good.end() - 2));
    const Bytes twoTables =
        Join({{0xFF, 0xC4}, WordBig(2 + 17 + 17 + 257), {0x00}, Bytes(16), {0x10}, Bytes(14), {2, 255}, Bytes(257)});
    const Bytes profile = Join({{0xFF, 0xE2}, WordBig(2 + 2 + 2 + 17 + 257), OverfullTable()});
    const struct {
        const char* name;
        Bytes file;
        bool isTaken;
    } kCases[] = {
        {"sound", good, true},
        {"a table before the picture", Join({start, OverfullTable(), rest}), false},
        {"fill bytes before the marker", Join({start, {0xFF, 0xFF}, OverfullTable(), rest}), false},
        {"fill bytes before the image", Join({{0xFF, 0xFF}, start, OverfullTable(), rest}), false},
        {"the second table of a segment", Join({start, twoTables, rest}), false},
        {"after a first scan", Join({unfinished, OverfullTable(), end}), false},
        {"inside a profile", Join({start, profile, rest}), true},
        {"after the end of the image", Join({good, OverfullTable()}), true},
    };
    for (const auto& [name, file, isTaken] : kCases) EXPECT_EQ(static_cast<bool>(Decode(file)), isTaken) << name;
}

TEST(ImageDecoder, RefusesWhatIsNoPictureOrHasMoreThanAGibibyte) {
    const struct {
        const char* name;
        Bytes file;
        bool isTooLarge = false;
    } kCases[] = {
        {"empty", {}},
        {"words", Text("there is no picture here, only words, and more of them than a header has")},
        {"Softimage picture", Join({{0x53, 0x80, 0xF6, 0x34}, Bytes(84), Text("PICT"), Bytes(200)})},
        {"negative extent", HdrFile(-2, 1, Bytes(64))},
        {"large BMP", BmpFile(16385, 16384, Bytes(16)), true},
        {"large HDR", HdrFile(8193, 8192, Bytes(16)), true},
    };
    for (const auto& [name, file, isTooLarge] : kCases) {
        const DecodedImage image = Decode(file);
        EXPECT_FALSE(image) << name;
        EXPECT_EQ(image.width != 0, isTooLarge) << name << ": only the header of a large one is read";
    }
}

}  // namespace
}  // namespace quillon
