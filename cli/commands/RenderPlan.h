#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/commands/Commands.h"
#include "cli/effect/FrameTime.h"
#include "cli/movie/FrameOutput.h"
#include "cli/movie/Movie.h"
#include "cli/pictures/FrameRange.h"
#include "cli/pictures/PictureSource.h"

namespace quillon::cli {

// Everything about the command line of `quillon render` that is known before the effect is loaded.
class RenderPlan {
public:
    // Throws WrongCommandLine.
    explicit RenderPlan(const RenderOptions& options);

    // All frames of the command line; a part of them, and a run that is resumed, renders fewer.
    std::vector<std::int32_t> allFrames() const { return range ? range->frames() : std::vector<std::int32_t>{0}; }
    FrameTime timeOf(std::int32_t frame) const;
    // Throws a Fault for the first file of input or layers that a frame needs and that is missing.
    void requireInputs() const;
    OutputOptions outputOptions() const;
    // What an interrupt prints from now on, when so many frames are done.
    void announce(std::size_t done) const;
    // The host, for an input of this size. The same for each part of the frames.
    host::HostSettings settings(PictureExtent fullExtent) const;

    struct Layer {
        std::string name;
        std::unique_ptr<PictureSource> pictures;
    };
    std::vector<std::int32_t> frames;                         // those to render, as their outputs were at the start
    std::vector<std::pair<std::string, std::string>> values;  // name, text
    std::vector<Layer> layers;
    std::unique_ptr<PictureSource> input;
    double framesPerSecond = 25;

private:
    void takeTiming(const std::optional<MovieInfo>& movie);
    std::vector<std::int32_t> framesToRender() const;
    void checkOutput() const;
    void checkLooks() const;
    std::unique_ptr<PictureSource> sourceOf(const std::filesystem::path& path, const std::optional<MovieInfo>& movie,
                                            std::vector<std::int32_t> wantedFrames) const;
    void checkHost() const;
    void requirePattern(const std::filesystem::path& path) const;
    void checkInput(const std::filesystem::path& path) const;

    const RenderOptions& options;
    RawLayout layout;
    std::optional<FrameRange> range;  // nothing: one moment
};

}  // namespace quillon::cli
