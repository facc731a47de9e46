#pragma once

#include <deque>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/commands/Commands.h"
#include "cli/effect/FrameTime.h"
#include "cli/pictures/FrameRange.h"
#include "cli/pictures/PictureSource.h"

namespace quillon::cli {

// Everything about the command line of `quillon render` that can be told before the effect is loaded.
class RenderPlan {
public:
    // Throws WrongCommandLine.
    explicit RenderPlan(const RenderOptions& options);

    // All frames of the command line; a part of them, and a run that is resumed, renders fewer.
    std::vector<std::int32_t> allFrames() const { return range ? range->frames() : std::vector<std::int32_t>{0}; }
    std::vector<std::int32_t> framesToRender() const;
    FrameTime timeOf(std::int32_t frame) const;
    // The host, for an input of this size. The same for each part of the frames.
    host::HostSettings settings(PictureExtent fullExtent) const;

    struct Layer {
        Layer(std::string layerName, const std::filesystem::path& file, const RawLayout& rawLayout, std::uint32_t n)
            : name(std::move(layerName)), pictures(file, rawLayout, n) {}
        std::string name;
        PictureSource pictures;
    };
    std::vector<std::pair<std::string, std::string>> values;  // name, text
    std::deque<Layer> layers;
    PictureSource input;

private:
    void checkHost() const;
    void requirePattern(const std::filesystem::path& path) const;
    void checkInput(const std::filesystem::path& path) const;

    const RenderOptions& options;
    RawLayout layout;
    std::optional<FrameRange> range;  // nothing: one moment
};

}  // namespace quillon::cli
