#pragma once

#include <functional>
#include <vector>

#include "cli/commands/RenderPlan.h"
#include "cli/effect/LoadedEffect.h"
#include "cli/keyframes/Sweep.h"
#include "cli/movie/FrameOutput.h"
#include "cli/sequence/FramePipeline.h"

namespace quillon::cli {

// What one process renders: frames of a plan, by one instance of the effect.
class Renderer {
public:
    // Loads the effect and looks at all that the plan's frames need. Throws a ToolError. The options live longer.
    explicit Renderer(const RenderOptions& renderOptions);

    const RenderPlan& frames() const { return plan; }
    // Where an artist's host would not do what is done here, since the effect's flags tell it otherwise.
    Diagnostics warnings() const;

    // See FrameSteps.
    struct Steps {
        std::function<EncodedFrame(std::int32_t frame, const Picture& picture)> encode;
        std::function<void(std::int32_t frame, const FrameTimes& times, EncodedFrame encoded)> report;
        std::function<bool()> isStopped = [] { return false; };
    };
    // All frames of the plan. Throws a ToolError for the first one that fails.
    void run(const Steps& steps);

    // The values of --sweep, row by row, with the frame at each. `add` gets a picture in a host's form.
    std::size_t sweepSize() const;
    std::size_t sweepColumns() const { return sweeps.size() > 1 ? sweeps[1].values.size() : 0; }
    void runSweep(const std::function<void(std::size_t place, const Picture& picture, const std::string& label)>& add);

private:
    std::shared_ptr<host::World> render(const FrameInput& input);
    EffectSource sourceToRender() const;
    PictureExtent openInput();
    void setControls();
    FrameInput read(std::int32_t frame);

    const RenderOptions& options;
    RenderPlan plan;
    EffectSource source;  // until the effect takes it
    LoadedEffect effect;
    std::vector<const Control*> layerControls;  // of plan.layers
    std::vector<Sweep> sweeps;
    std::uint32_t bitDepth = 0;
};

}  // namespace quillon::cli
