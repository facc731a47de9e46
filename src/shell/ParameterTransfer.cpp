#include "shell/ParameterTransfer.h"

#include <optional>

#include "shell/ParameterMaps.h"

namespace quillon {

namespace {

std::optional<TargetControl> TargetOf(const EngineTurn& turn, std::uint32_t hostIndex) {
    const auto& known = ParameterMaps::instance().paramOfHostIndex;
    const auto found = known.find(hostIndex);
    if (found == known.end()) return std::nullopt;
    return TargetControl{found->second, turn->parameterInfo(found->second)->flags};
}

struct SweptControl {
    std::uint32_t hostIndex;
    std::optional<TargetControl> target;
};

std::vector<SweptControl> ListSweptControls(PF_InData& in, bool withLayers) {
    const auto& known = ParameterMaps::instance().hostIndexOfParam;
    const EngineTurn turn(in.sequence_data);
    std::vector<SweptControl> controls;
    const std::uint32_t count = turn->parameterCount();
    for (std::uint32_t i = 0; i < count; ++i) {
        const Parameter& parameter = *turn->parameterInfo(i);
        if (parameter.flags & ParameterFlag::kHidden) continue;
        const bool isPicture = parameter.kind == LAYER || parameter.kind == TEXTURE || parameter.kind == PATH;
        if (isPicture && !withLayers) continue;
        const auto found = known.find(i);
        if (found != known.end()) controls.push_back({found->second, TargetOf(turn, found->second)});
    }
    return controls;
}

}  // namespace

ControlValue::ControlValue(PF_InData& in, PF_ParamDef& def, const TargetControl& target, SuiteCache& cache)
    : declarationIndex(target.declarationIndex) {
    if (const HostControlType* const type = FindHostControl(def.param_type))
        type->read({in, def, target.flags, cache}, value);
}

void ControlValue::apply(const EngineTurn& turn) const {
    if (value.layer && turn.hasGL()) value.layer.upload(turn, declarationIndex);
    turn->setParameterValue(declarationIndex, value.words.data());
}

CheckedOutControls::~CheckedOutControls() noexcept(false) {
    end.run([this] { CallForEach(defs, [this](PF_ParamDef def) { in.inter.checkin_param(in.effect_ref, &def); }); });
}

void CheckedOutControls::checkInLast() {
    PF_ParamDef def = defs.back();
    defs.pop_back();  // before the call: one that throws is not made again
    in.inter.checkin_param(in.effect_ref, &def);
}

ParameterSweep::ParameterSweep(PF_InData& in, bool withLayers, SuiteCache& cache) : checkedOut(in) {
    const std::vector<SweptControl> controls = ListSweptControls(in, withLayers);
    checkedOut.reserve(controls.size());
    values.reserve(controls.size());
    bool hasFailed = false;
    for (const auto& [hostIndex, target] : controls) {
        PF_ParamDef def{};
        if (!hasFailed)
            hasFailed = in.inter.checkout_param(in.effect_ref, static_cast<PF_ParamIndex>(hostIndex), in.current_time,
                                                in.time_step, in.time_scale, &def) != PF_Err_NONE;
        checkedOut.add(def);
        const bool hasValue = !hasFailed && target;
        if (hasValue) values.emplace_back(in, def, *target, cache);
        if (!hasValue || !values.back().hasPixels()) checkedOut.checkInLast();
    }
}

void ParameterSweep::apply(const EngineTurn& turn) const {
    for (const ControlValue& value : values) value.apply(turn);
}

ParameterSweep readAllParameters(PF_InData& in, bool withLayers, SuiteCache& cache) {
    return ParameterSweep(in, withLayers, cache);
}

void transferParameter(PF_InData& in, PF_ParamDef& def, std::uint32_t hostIndex, SuiteCache& cache) {
    const std::optional<TargetControl> target = TargetOf(EngineTurn(in.sequence_data), hostIndex);
    if (!target) return;
    const ControlValue value(in, def, *target, cache);
    value.apply(EngineTurn(in.sequence_data, value.hasPixels() ? GLUse::locked : GLUse::none));
}

}  // namespace quillon
