#include "cli/pictures/PictureFormat.h"

#include <algorithm>
#include <string_view>

#include "cli/diagnostics/ToolError.h"
#include "cli/system/FileEnding.h"
#include "packer/FileError.h"
#include "packer/WholeFile.h"

namespace quillon::cli {

namespace {

using std::literals::operator""sv;

// The last row is asked when no signature fits.
constexpr PictureFormat kFormats[] = {
    {".png", "\x89PNG\r\n\x1a\n", ReadPng, WritePng},
    {".exr", "\x76\x2f\x31\x01", ReadExr, WriteExr},
    {".tif", "II*\0"sv, ReadTiff, WriteTiff},  // least significant byte first, as it is written
    {".tiff", "MM\0*"sv, ReadTiff, WriteTiff},
    {".argb", "", ReadRaw, WriteRaw},
    {"", "", ReadOther, nullptr},
};

const PictureFormat* FindByEnding(const std::filesystem::path& path) {
    const std::string ending = LowerEnding(path);
    const auto* found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                     [&](const PictureFormat& format) { return ending == format.ending; });
    return found != std::end(kFormats) && found->write ? found : nullptr;
}

const PictureFormat& FindByContent(std::span<const std::byte> file) {
    for (const PictureFormat& format : kFormats) {
        const std::string_view start(reinterpret_cast<const char*>(file.data()), file.size());
        if (!format.signature.empty() && start.starts_with(format.signature)) return format;
    }
    return *(std::end(kFormats) - 1);
}

std::vector<std::byte> ReadInput(const std::filesystem::path& path) {
    try {
        return ReadWholeFile(path, kMaximumFileBytes);
    } catch (const FileError& error) {
        throw Fault(error.place, error.fault, error.remedy);
    }
}

}  // namespace

bool IsRawPicture(const std::filesystem::path& path) {
    return LowerEnding(path) == ".argb";
}

void RequireLayout(const std::filesystem::path& path, const RawLayout& layout) {
    if (IsRawPicture(path) && (layout.width == 0 || layout.bitDepth == 0))
        throw WrongCommandLine(path.string(), "a raw buffer has no header", "give --size and --depth");
}

bool IsFloatPicture(const std::filesystem::path& path) {
    return LowerEnding(path) == ".exr";
}

Picture ReadPicture(const std::filesystem::path& path, const RawLayout& layout) {
    const std::vector<std::byte> file = ReadInput(path);
    const PictureFormat& format = IsRawPicture(path) ? *FindByEnding(path) : FindByContent(file);
    try {
        return format.read(file, layout);
    } catch (const ToolError& error) {
        const Diagnostic& fault = error.faults.front();
        throw Fault(path.string(), "cannot be read as a picture: " + fault.text, fault.remedy);
    }
}

Picture DecodePicture(std::span<const std::byte> file) {
    return FindByContent(file).read(file, {});
}

void RequireWritable(const std::filesystem::path& path) {
    if (FindByEnding(path)) return;
    throw WrongCommandLine(path.string(), "pictures are written as .png, .exr, .tif, .tiff or .argb",
                           "give the output a name with one of these endings");
}

void WritePicture(const std::filesystem::path& path, const Picture& picture, const StorageOptions& options) {
    RequireWritable(path);
    try {
        WriteWholeFile(path, FindByEnding(path)->write(picture, options));
    } catch (const FileError& error) {
        throw Fault(error.place, error.fault, "choose another place with -o");
    } catch (const ToolError& error) {
        throw Fault(path.string(), "cannot be written: " + error.faults.front().text);
    }
}

}  // namespace quillon::cli
