#pragma once

#include <condition_variable>
#include <filesystem>
#include <memory>
#include <mutex>
#include <vector>

#include "cli/pictures/Picture.h"
#include "cli/system/ChildProcess.h"

namespace quillon::cli {

// A movie's frames, decoded one after the other by ffmpeg at a fixed rate, whatever that of the movie is.
class MovieReader {
public:
    // Frame F is the movie's picture at F / framesPerSecond seconds. The frames are those that will be read, rising.
    MovieReader(std::filesystem::path file, double framesPerSecond, std::uint32_t depth,
                std::vector<std::int32_t> wantedFrames);

    // Each of the frames once. Any thread may call; calls wait for those of the frames before. Throws a Fault.
    Picture read(std::int32_t frame);

private:
    Picture decode(std::int32_t frame);
    Picture decodeNext();
    [[noreturn]] void fail(const std::string& fault);

    const std::filesystem::path path;
    const double rate;
    const std::uint32_t bitDepth;
    const std::vector<std::int32_t> frames;

    std::mutex mutex;
    std::condition_variable hasChanged;
    std::size_t turn = 0;  // in `frames`
    std::int32_t decoded = 0;
    bool hasFailed = false;
    std::unique_ptr<ChildProcess> decoder;  // from the first frame on
};

}  // namespace quillon::cli
