#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "cli/Controls.h"
#include "cli/EffectSource.h"
#include "cli/Picture.h"

namespace quillon {
class IPlugin;
}

namespace quillon::cli {

// What a host gives for one frame. All pictures are in the host's form at one depth: HostFormat, channels A, R, G, B.
struct FrameRequest {
    double timeSeconds = 0;
    const Picture* input = nullptr;
    std::vector<std::pair<std::uint32_t, const Picture*>> layers;  // by declaration index
};

// One effect with one instance of it, driven as a host does. There is one engine in the process, so one session at a
// time. Whatever goes wrong is thrown as ToolError: in the effect, all faults of that step at once.
class EffectSession {
public:
    // Checks, packs and loads the effect and runs its setup().
    explicit EffectSession(EffectSource effect);

    // The controls that a host shows, in the order of their declaration.
    const std::vector<Control>& controls() const { return visibleControls; }

    // From the next frame on. Controls that nobody set have the host's default.
    void set(const Control& control, const ControlBytes& value) { values[control.index] = value; }

    // One frame, of the size that the effect asks for, in the input's form.
    Picture render(const FrameRequest& request);

private:
    void sendControls(const Picture& input);
    Picture readResult(std::uint32_t width, std::uint32_t height, std::uint32_t bitDepth);
    // Throws the script errors and shader errors that have come up.
    void throwFaults();

    EffectSource source;
    IPlugin& engine;
    std::vector<Control> visibleControls;
    std::map<std::uint32_t, ControlBytes> values;  // by declaration index
};

}  // namespace quillon::cli
