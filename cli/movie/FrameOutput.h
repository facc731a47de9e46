#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "cli/movie/MovieWriter.h"
#include "cli/pictures/PictureFormat.h"
#include "cli/pictures/StreamFormats.h"

namespace quillon::cli {

// How frames go to standard output, see StreamFormats.h.
enum class StreamForm { raw, y4m };

// Where frames go, and in which form.
struct OutputOptions {
    std::filesystem::path path;  // of a picture, a pattern or a movie; "-": standard output; empty: nowhere
    StorageOptions storage;
    StreamForm stream = StreamForm::raw;
    Background background;  // of what has no alpha
    MovieOptions movie;
};

bool IsStandardOutput(const std::filesystem::path& path);  // "-"

// A frame in the form in which its output takes it; no bytes for a picture that has become a file.
struct EncodedFrame {
    MovieWriter::Form form;
    std::vector<std::byte> bytes;
};

// Where finished frames go.
class FrameOutput {
public:
    virtual ~FrameOutput() = default;

    // A picture in a host's form becomes a file, or what add() takes. Any thread, also of another process; frames in
    // any order.
    virtual EncodedFrame encode(std::int32_t frame, const Picture& picture) const = 0;
    // One thread, in order. The path that is then complete, empty for none.
    virtual std::string add(std::int32_t frame, EncodedFrame encoded) = 0;
    // After the last frame, as add().
    virtual std::string finish() { return ""; }
};

// Whether frames become files, each for itself, and not parts of one output.
bool IsPictureOutput(const std::filesystem::path& path);

// The one that the path asks for.
std::unique_ptr<FrameOutput> MakeFrameOutput(const OutputOptions& options);

}  // namespace quillon::cli
