#pragma once

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

    std::vector<std::int32_t> frames() const { return range ? range->frames() : std::vector<std::int32_t>{0}; }
    FrameTime timeOf(std::int32_t frame) const;
    // The host, for an input of this size.
    host::HostSettings settings(PictureExtent fullExtent) const;

    struct Layer {
        std::string name;
        PictureSource pictures;
    };
    std::vector<std::pair<std::string, std::string>> values;  // name, text
    std::vector<Layer> layers;
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
