#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "cli/effect/Controls.h"
#include "cli/effect/EffectSource.h"
#include "cli/effect/FrameTime.h"
#include "cli/effect/HostRun.h"
#include "cli/effect/PackedModule.h"
#include "cli/pictures/PictureSource.h"

namespace quillon::cli {

// What one frame is made of. All pictures have one depth.
struct FrameInput {
    FrameTime time{};
    std::shared_ptr<host::World> picture{};
    PictureExtent fullExtent{};  // before downsampling
    std::vector<std::pair<const Control*, std::shared_ptr<host::World>>> layers{};
};

// An effect in a host, rendering through its packed module. The module is silent about what is wrong with its script
// and its shaders. So each step is rehearsed first, in a host of the same kind, by the tool's own engine, which tells;
// the module's turn comes when that was clean. Whatever goes wrong is thrown as ToolError: in the effect, all faults
// of that step at once. One a process.
class LoadedEffect {
public:
    // Packs and loads the effect and runs its setup(). The source has passed CheckSource.
    LoadedEffect(EffectSource effect, const host::HostSettings& hostSettings);

    // Of a file of the effect, for messages.
    std::string pathOf(const char* file) const { return source.pathOf(file); }

    const std::vector<Control>& controls() const { return visibleControls; }
    // As the module has registered them with the host; controls()[i] is the script's side of parameters()[i].
    const std::vector<PF_ParamDef>& parameters() const { return module.parameters(); }

    // From the next frame on. Controls that nobody set have the host's default.
    void set(const Control& control, const ControlValue& value) { values.emplace_back(&control, value); }

    // One frame, of the size that the host makes it, in the input's form.
    Picture render(const FrameInput& input);

private:
    void startRehearsal();
    void apply();
    void prepare(HostRun& run, const FrameInput& input, const host::FrameRequest& request);
    // The layer's pixel aspect is the pictures' own; throws a Fault for one that the driver cannot take.
    void takePictures(const FrameInput& input) const;
    void checkFrame(const HostFrame& frame) const;
    void throwFaults() const;
    void throwViolations() const;
    [[noreturn]] void throwRenderFault(const char* file, const std::string& text) const;

    EffectSource source;
    host::HostSettings settings;
    PackedModule packed;
    HostRun rehearsal;
    HostRun module;
    std::vector<Control> visibleControls;
    std::vector<std::pair<const Control*, ControlValue>> values;  // the last of one control counts
    std::uint32_t largestExtent = 0;
    bool isApplied = false;
};

}  // namespace quillon::cli
