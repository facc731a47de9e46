#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
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

// A way to store pictures. Reading gives the picture in the file's own form; writing takes the picture in the host's
// form and finds the closest that the format has. Both throw a Fault without a place, to which ReadPicture
// and WritePicture add the path.
struct PictureFormat {
    const char* ending;     // lower case, with its dot
    const char* signature;  // what such files start with; empty when they have nothing of the kind
    Picture (*read)(std::span<const std::byte> file, const RawLayout& layout);
    std::vector<std::byte> (*write)(const Picture& picture);  // null: as an input only
};

// Whether the name is that of a raw buffer, which needs a RawLayout to be read.
bool IsRawPicture(const std::filesystem::path& path);

// Whether pictures of that name always hold floats.
bool IsFloatPicture(const std::filesystem::path& path);

// Reads a picture of any format. What it is, is told by its content; a raw buffer by its name. Throws a Fault.
Picture ReadPicture(const std::filesystem::path& path, const RawLayout& layout = {});

// Throws WrongCommandLine unless pictures can be written under such a name.
void RequireWritable(const std::filesystem::path& path);

// Writes a picture, which is in a host's form, whole or not at all, in the format that the name's ending says.
// Throws a Fault.
void WritePicture(const std::filesystem::path& path, const Picture& picture);

// The formats, each in a file of its own.
Picture ReadPng(std::span<const std::byte> file, const RawLayout&);
std::vector<std::byte> WritePng(const Picture& picture);
Picture ReadExr(std::span<const std::byte> file, const RawLayout&);
std::vector<std::byte> WriteExr(const Picture& picture);
Picture ReadRaw(std::span<const std::byte> file, const RawLayout& layout);
std::vector<std::byte> WriteRaw(const Picture& picture);
Picture ReadOther(std::span<const std::byte> file, const RawLayout&);  // JPEG, BMP, GIF, PSD, Radiance HDR, TGA

}  // namespace quillon::cli
