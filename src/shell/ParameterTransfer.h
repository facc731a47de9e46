#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "hostapi/HostApi.h"
#include "shell/EngineTurn.h"
#include "shell/HostCleanup.h"
#include "shell/HostControls.h"
#include "shell/Suites.h"

namespace quillon {

// Values and states of controls, between the host and the engine.

// A control of the script that the host has a control for.
struct TargetControl {
    std::uint32_t declarationIndex;
    std::uint32_t flags;  // ParameterFlag
};

// The host's value of one control in the engine's form.
class ControlValue {
public:
    // Reads a control that is checked out; throws as HostControlType::read does.
    ControlValue(PF_InData& in, PF_ParamDef& def, const TargetControl& target, SuiteCache& cache);

    // True for a layer with pixels. They are the host's memory: apply() comes before the layer is checked in.
    bool hasPixels() const { return static_cast<bool>(value.layer); }

    // Carries the value into the turn's instance, and a layer's pixels into its texture if the turn has the GL lock.
    void apply(const EngineTurn& turn) const;

private:
    std::uint32_t declarationIndex;
    EngineValue value;
};

// Controls that are checked out of the host. The destructor checks in what is left, and passes on what the host throws.
class CheckedOutControls {
public:
    explicit CheckedOutControls(PF_InData& inData) : in(inData) {}
    ~CheckedOutControls() noexcept(false);
    CheckedOutControls(const CheckedOutControls&) = delete;
    CheckedOutControls& operator=(const CheckedOutControls&) = delete;

    // Room for so many, so that add() cannot fail.
    void reserve(std::size_t count) { defs.reserve(count); }
    void add(const PF_ParamDef& def) { defs.push_back(def); }  // also one whose checkout failed or was left out
    void checkInLast();                                        // of those added; there must be one

private:
    PF_InData& in;
    std::vector<PF_ParamDef> defs;
    EndOfScope end;
};

// The host's values of all controls at the current time. Layers with pixels stay checked out until it ends.
class ParameterSweep {
public:
    ParameterSweep(PF_InData& in, bool withLayers, SuiteCache& cache);

    // As ControlValue::apply, for all of them.
    void apply(const EngineTurn& turn) const;

private:
    CheckedOutControls checkedOut;
    std::vector<ControlValue> values;
};

// Checks out the value of every control that is not hidden; without layers, LAYER, TEXTURE and PATH are left out too.
// After a failing checkout no more are made, but the check-ins go on, and the instance keeps its earlier values. A
// control has a value only after the first refreshParamUI of the process, which fills the map of host indices.
ParameterSweep readAllParameters(PF_InData& in, bool withLayers, SuiteCache& cache);

// Carries one host value into the instance of in_data's block, under the same condition. A layer needs the GL lock,
// which is taken; without it the layer's pixels stay as they were.
void transferParameter(PF_InData& in, PF_ParamDef& def, std::uint32_t hostIndex, SuiteCache& cache);

// Fills the maps between the script's order of controls and the host's, and asks the host to draw its panel anew. With
// `params`, the host's controls by host index, it also sends names and enabled states of the block's instance, up to
// the first that the host refuses.
void refreshParamUI(PF_InData& in, PF_OutData& out, PF_ParamDef** params, PF_Handle sequenceData);

}  // namespace quillon
