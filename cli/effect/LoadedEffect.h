#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "cli/effect/ControlValues.h"
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
    PictureExtent fullExtent{};                                                     // before downsampling
    std::vector<std::pair<const Control*, std::shared_ptr<host::World>>> layers{};  // null for "None"
};

// An effect in a host. A folder renders by the tool's own engine, which reports what is wrong with script and shaders,
// and gives the same pixels as the module that the folder is packed into. A packed module renders by itself and is
// silent. So each of its steps is rehearsed first, in a host of the same kind, by the tool's own engine; the module's
// turn comes when that was clean. Whatever goes wrong is thrown as ToolError: in the effect, all faults of that step at
// once. One a process.
class LoadedEffect {
public:
    // Packs and loads the effect and runs its setup(). The source has passed CheckSource.
    LoadedEffect(EffectSource effect, const host::HostSettings& hostSettings);

    // Of a file of the effect, for messages.
    std::string pathOf(const char* file) const { return source.pathOf(file); }

    const std::vector<Control>& controls() const { return visibleControls; }
    // As they are registered with the host; controls()[i] is the script's side of parameters()[i].
    const std::vector<PF_ParamDef>& parameters() const { return linked.parameters(); }

    // One more instance of the effect, as on a second layer, with each control at its default. It is the chosen one
    // then: what sets, shows and renders is about that. The first one, number 0, is there from the first frame on.
    void addInstance();
    void selectInstance(std::size_t number);

    // A control's value at a moment, in seconds, from the next frame on. Of all that are given for one control the last
    // counts; a control without one has the host's default.
    using ValueAt = std::function<ControlValue(double seconds)>;
    void set(const Control& control, ValueAt valueAt);
    // Back to the default; of a layer "None".
    void reset(const Control& control);
    // As the host shows it, with name and state as the last frame has left them.
    const PF_ParamDef& shown(const Control& control) const;

    // One frame, of the size that the host makes it, at the input's depth.
    std::shared_ptr<host::World> render(const FrameInput& input);

private:
    void startLinked();
    void startFirst();
    void apply();
    void setValue(host::HostInstance& instance, PF_ParamIndex index, double seconds) const;
    void prepare(HostRun& run, const FrameInput& input, const host::FrameRequest& request);
    // The layer's pixel aspect is the pictures' own; throws a Fault for one that the driver cannot take.
    void takePictures(const FrameInput& input) const;
    void checkFrame(const HostFrame& frame) const;
    void throwFaults() const;
    void throwViolations() const;
    [[noreturn]] void throwRenderFault(const std::string& text) const;
    std::vector<HostRun*> runs();
    std::vector<const HostRun*> runs() const;

    EffectSource source;
    host::HostSettings settings;
    PackedModule packed;
    HostRun linked;                 // by the tool's engine
    std::optional<HostRun> module;  // what renders, when a module was given
    std::vector<Control> visibleControls;
    using Values = std::map<std::int32_t, std::pair<const Control*, ValueAt>>;  // by the control's index
    std::vector<Values> valuesOf{1};                                            // by the instance's number
    std::size_t chosen = 0;
    std::uint32_t largestExtent = 0;
    bool isApplied = false;  // the first instance is there
    bool isPanelOld = true;  // values have changed since the panel was updated
};

}  // namespace quillon::cli
