#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "cli/movie/MovieWriter.h"
#include "cli/pictures/PictureFormat.h"
#include "cli/pictures/StreamFormats.h"

namespace quillon::cli {

enum class StreamForm { raw, y4m };

struct OutputOptions {
    std::filesystem::path path;  // of a picture, a pattern or a movie; "-": standard output
    StorageOptions storage;
    StreamForm stream = StreamForm::raw;
    Background background;  // of what has no alpha
    MovieOptions movie;
};

bool IsStandardOutput(const std::filesystem::path& path);

// Where finished frames go.
class FrameOutput {
public:
    virtual ~FrameOutput() = default;

    // A picture in a host's form becomes a file, or the bytes for add(). Any thread, frames in any order.
    virtual std::vector<std::byte> encode(std::int32_t frame, const Picture& picture) = 0;
    // One thread, in order. The path that is then complete, empty for none.
    virtual std::string add(std::int32_t frame, std::vector<std::byte> bytes) = 0;
    // After the last frame, as add().
    virtual std::string finish() { return ""; }
};

std::unique_ptr<FrameOutput> MakeFrameOutput(const OutputOptions& options);

}  // namespace quillon::cli
