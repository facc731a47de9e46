// A table of keys in both forms, and the text as what --key, --sweep and --set take, for controls of every kind.
//
// Planted once: no look for a key before the frame.

#include "cli/keyframes/Keyframes.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "Input.h"
#include "cli/diagnostics/ToolError.h"
#include "cli/keyframes/Sweep.h"

using namespace quillon;
using namespace quillon::cli;

namespace {

// One control of each kind, named by its number, and two that share a label.
std::vector<Control> Controls() {
    std::vector<Parameter> declarations;
    for (const ControlKind& kind : kControlKinds) {
        Parameter& declared = declarations.emplace_back();
        declared.kind = kind.number;
        declared.uniformName = kind.name;
        declared.label = kind.number < COLOR ? "same" : "the " + declared.uniformName;
        declared.choices = "off|on|2";
    }
    return ControlsOf(declarations);
}

// Also the faults' texts: each names what is wrong, in the input's own words.
template <class Read>
void Try(Read read) {
    try {
        read();
    } catch (const ToolError& error) {
        fuzz::Require(!error.faults.empty() && !error.faults.front().text.empty(), "a fault says what is wrong");
    }
}

bool IsFinite(const ControlValue& value) {
    return std::ranges::all_of(value.numbers, [](float number) { return std::isfinite(number); });
}

void Follow(const Keyframes& keyframes) {
    for (const auto& [control, track] : keyframes.tracks()) {
        for (const double frame : {-1e300, -1.0, 0.0, 0.5, 1.0, 11.999, 24.0, 999'999'999.0, 1e300})
            fuzz::Require(IsFinite(track.at(frame)), "values between keys are finite");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::vector<Control> kControls = Controls();
    static const TemporaryFolder kFolder;
    const std::string_view text = fuzz::TextOf(data, size);

    for (const char* name : {"keys.csv", "keys.json"}) {
        Keyframes keyframes(kControls);
        Try([&] { keyframes.addFile(fuzz::WriteInput(kFolder.path() / name, text)); });
        Follow(keyframes);  // those in front of a fault stay
    }
    Keyframes keyframes(kControls);
    for (std::string_view rest = text; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(rest.size(), line.size() + 1));
        Try([&] { keyframes.addOption(line); });
        Try([&] {
            for (const auto& [written, value] : ParseSweep(kControls, line).values)
                fuzz::Require(IsFinite(value), "values of a sweep are finite");
        });
    }
    Follow(keyframes);
    return 0;
}
