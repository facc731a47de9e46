#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cli/pictures/Picture.h"

namespace quillon::cli {

// What a raw buffer does not say of itself. A zero: not known.
struct RawLayout {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t bitDepth = 0;  // 8, 16 or 32
};

// Pictures that would take more than this as they are decoded are refused before anything is allocated.
inline constexpr std::uint64_t kMaximumPictureBytes = std::uint64_t{1} << 30;

// Of a picture's file no more than this is read: the largest picture without compression, with room for what the format
// adds. It bounds what a device or a pipe without an end can take.
inline constexpr std::uint64_t kMaximumFileBytes = kMaximumPictureBytes + (std::uint64_t{64} << 20);

inline constexpr const char* kExrCompressions[] = {"none", "rle", "zips", "zip", "piz", "dwaa", "dwab"};

// What the formats leave open.
struct StorageOptions {
    int pngLevel = 1;            // 0: not compressed, 9: smallest
    bool hasAlpha = true;        // false: three channels, and EXR colors are not multiplied by alpha
    bool isExrHalf = false;      // else floats, which are exact
    std::string exrCompression;  // one of kExrCompressions, of which dwaa and dwab lose; empty: piz or rle
    double framesPerSecond = 0;  // for EXR's attribute; 0: not a part of a sequence
    double pixelAspect = 1;      // width to height, for EXR's attribute
};

// A way to store pictures. Reading gives the picture in the file's own form; writing takes the picture in the host's
// form and finds the closest that the format has. Both throw a Fault without a place, to which ReadPicture
// and WritePicture add the path.
struct PictureFormat {
    const char* ending;          // lower case, with its dot
    std::string_view signature;  // what such files start with; empty when they have nothing of the kind
    Picture (*read)(std::span<const std::byte> file, const RawLayout& layout);
    std::vector<std::byte> (*write)(const Picture& picture, const StorageOptions& options);  // null: only read
};

// Whether the name is that of a raw buffer, which needs a RawLayout to be read.
bool IsRawPicture(const std::filesystem::path& path);

// Throws WrongCommandLine when the name is that of a raw buffer and the layout does not say how to read it.
void RequireLayout(const std::filesystem::path& path, const RawLayout& layout);

// Whether pictures of that name always hold floats.
bool IsFloatPicture(const std::filesystem::path& path);

// Reads a picture of any format. Its content decides which; a raw buffer is known by its name. Throws a Fault.
Picture ReadPicture(const std::filesystem::path& path, const RawLayout& layout = {});

// The same of a file's bytes, whose content says what they are.
Picture DecodePicture(std::span<const std::byte> file);

// Throws WrongCommandLine unless pictures can be written under such a name.
void RequireWritable(const std::filesystem::path& path);

// Writes a picture, which is in a host's form, whole or not at all, in the format that the name's ending says.
// Throws a Fault. Any thread may call.
void WritePicture(const std::filesystem::path& path, const Picture& picture, const StorageOptions& options = {});

// How many threads a picture's encoding may take besides the calling one, where its format can use them.
void UseThreads(unsigned threads);

// The formats, a file for each.
Picture ReadPng(std::span<const std::byte> file, const RawLayout&);
std::vector<std::byte> WritePng(const Picture& picture, const StorageOptions& options);
Picture ReadExr(std::span<const std::byte> file, const RawLayout&);
std::vector<std::byte> WriteExr(const Picture& picture, const StorageOptions& options);
Picture ReadTiff(std::span<const std::byte> file, const RawLayout&);
std::vector<std::byte> WriteTiff(const Picture& picture, const StorageOptions& options);
Picture ReadRaw(std::span<const std::byte> file, const RawLayout& layout);
std::vector<std::byte> WriteRaw(const Picture& picture, const StorageOptions&);
Picture ReadOther(std::span<const std::byte> file, const RawLayout&);  // JPEG, BMP, GIF, PSD, Radiance HDR, TGA

}  // namespace quillon::cli
