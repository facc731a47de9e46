#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <future>
#include <memory>
#include <string>
#include <vector>

#include "cli/sequence/ThreadPool.h"
#include "cli/system/ChildProcess.h"
#include "platform/TemporaryPath.h"

namespace quillon::cli {

// How a movie is encoded.
struct MovieOptions {
    double framesPerSecond = 25;
    std::vector<std::string> codecArgs;  // further arguments of ffmpeg
};

// A movie that ffmpeg encodes, under a temporary name until it is whole. Used by one thread, which waits for
// the encoder only when a few frames are pending.
class MovieWriter {
public:
    // The output is a movie by its name.
    MovieWriter(std::filesystem::path output, MovieOptions movieOptions);

    // Whether movies of that name keep alpha; the others want opaque frames.
    static bool HasAlpha(const std::filesystem::path& path);

    // What all frames of a movie are like.
    struct Form {
        std::uint32_t width = 0;
        std::uint32_t height = 0;
        std::uint32_t bitDepth = 0;
    };

    // The next frame, see RgbaFrame. Throws a Fault.
    void add(std::vector<std::byte> frame, const Form& frames);
    // Gives the movie its name. Throws a Fault.
    void finish();

private:
    void start(const Form& frames);
    std::filesystem::path encodedFile() const;
    void finishOldest();
    [[noreturn]] void fail();

    const std::filesystem::path path;
    const MovieOptions options;
    // A folder: once it is removed, an ffmpeg that outlives this process can make no file.
    std::unique_ptr<TemporaryPath> temporary;
    std::unique_ptr<ChildProcess> encoder;
    std::deque<std::future<bool>> pending;
    ThreadPool pool{1};  // last: it uses the others
};

}  // namespace quillon::cli
