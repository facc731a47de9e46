#include "host/HostSession.h"

#include <algorithm>

#include "host/HostTables.h"

namespace quillon::host {

namespace {

A_long FullSize(A_long size, const PF_RationalScale& downsample) {
    return downsample.num > 0 ? static_cast<A_long>(static_cast<std::int64_t>(size) * downsample.den / downsample.num)
                              : size;
}

}  // namespace

HostSession::HostSession(EffectModule effect, HostSettings hostSettings)
    : module(effect), chosenSettings(hostSettings) {}

HostSession::~HostSession() = default;

void HostSession::fillIn(PF_InData& in, const Selector& selector) const {
    const HostSettings& set = chosenSettings;
    FillInteractCallbacks(in.inter);
    in.utils = UtilCallbacks();
    in.pica_basicP = plannedFaults.hasBasicSuite() ? BasicSuite() : nullptr;
    in.effect_ref = effectRefOf(selector.instance);
    in.quality = PF_Quality_HI;
    in.version = {set.versionMajor, set.versionMinor};
    in.appl_id = set.applId();
    in.num_params = static_cast<A_long>(addedParameters.size()) + 1;
    in.current_time = selector.instance ? selector.instance->currentTime : set.currentTime;
    in.time_step = selector.instance ? selector.instance->timeStep : set.timeStep;
    in.local_time_step = in.time_step;
    in.time_scale = selector.instance ? selector.instance->timeScale : set.timeScale;
    in.total_time = set.totalTime;
    in.width = set.compWidth;
    in.height = set.compHeight;
    if (const FrameRequest* frame = selector.frame) {
        if (frame->input) {
            in.width = FullSize(frame->input->width(), set.downsampleX);
            in.height = FullSize(frame->input->height(), set.downsampleY);
        }
        in.width = frame->layerWidth.value_or(in.width);
        in.height = frame->layerHeight.value_or(in.height);
        in.pre_effect_source_origin_x = frame->sourceOrigin.h;
        in.pre_effect_source_origin_y = frame->sourceOrigin.v;
    }
    in.extent_hint = {0, 0, in.width, in.height};
    in.output_origin_x = selector.outputOrigin.h;
    in.output_origin_y = selector.outputOrigin.v;
    in.downsample_x = set.downsampleX;
    in.downsample_y = set.downsampleY;
    in.pixel_aspect_ratio = set.layerPixelAspect;
    in.global_data = globalDataHandle;
    in.sequence_data = selector.instance ? selector.instance->sequenceData : nullptr;
    in.frame_data = selector.frameData;
}

Answer HostSession::send(const Selector& selector) {
    Answer answer;
    PF_InData& in = answer.in;
    PF_OutData& out = answer.out;
    fillIn(in, selector);
    out.global_data = in.global_data;
    out.frame_data = in.frame_data;
    out.width = selector.presetWidth;
    out.height = selector.presetHeight;

    // One place for each control that the effect believes in: it may look one up that the host does not have.
    std::vector<PF_ParamDef> defs;
    std::vector<PF_ParamDef*> params;
    SelectorCall call(*this, selector, out);
    if (selector.hasParams) {
        defs.resize(std::max(addedParameters.size() + 1, static_cast<std::size_t>(std::max(claimedParams, A_long{1}))));
        for (std::size_t i = 0; i < defs.size(); ++i) {
            call.serveParam(static_cast<PF_ParamIndex>(i), defs[i]);
            params.push_back(&defs[i]);
        }
    }
    PF_LayerDef output{};
    if (selector.output) output = selector.output->record();

    if (testHooks.before) testHooks.before(selector.cmd, in, out);
    try {
        answer.error = module.entry()(selector.cmd, &in, &out, params.empty() ? nullptr : params.data(),
                                      selector.output ? &output : nullptr, selector.extra);
    } catch (...) {
        call.violation("an exception left the effect");
        answer.error = PF_Err_INVALID_CALLBACK;
    }
    if (testHooks.after) testHooks.after(selector.cmd, in, out);
    call.close(in);

    if (!selector.instance) return answer;
    for (std::size_t i = 1; i < defs.size(); ++i) {
        const bool isChanged = defs[i].uu.change_flags & PF_ChangeFlag_CHANGED_VALUE;
        const auto index = static_cast<PF_ParamIndex>(i);
        const bool mayChange = selector.cmd == PF_Cmd_USER_CHANGED_PARAM || selector.cmd == PF_Cmd_EVENT;
        if (isChanged && mayChange && selector.instance->hasParam(index)) selector.instance->takeOver(index, defs[i]);
    }
    return answer;
}

void HostSession::clearRecords() {
    const std::lock_guard lock(mutex);
    keptRecords = {};
}

std::vector<std::string> HostSession::violations() const {
    const std::lock_guard lock(mutex);
    return seenViolations;
}

void HostSession::clearViolations() {
    const std::lock_guard lock(mutex);
    seenViolations.clear();
}

void HostSession::addViolation(const std::string& text) {
    const std::lock_guard lock(mutex);
    seenViolations.push_back(text);
}

void HostSession::allowLostHandles(int count) {
    const std::lock_guard lock(mutex);
    allowedLosses = count;
}

bool HostSession::isLossAllowed() {
    const std::lock_guard lock(mutex);
    return allowedLosses > 0 && allowedLosses-- > 0;
}

std::shared_ptr<World> HostSession::newWorld(A_long width, A_long height, int bitDepth) const {
    auto world = testHooks.makeWorld
                     ? testHooks.makeWorld(width, height, bitDepth)
                     : std::make_shared<World>(width, height, bitDepth, chosenSettings.rowPaddingPixels);
    world->pixelAspect = chosenSettings.layerPixelAspect;
    return world;
}

PF_ProgPtr HostSession::effectRefOf(const HostInstance* instance) const {
    const void* const owner = instance ? static_cast<const void*>(instance) : this;
    return static_cast<PF_ProgPtr>(const_cast<void*>(owner));
}

PF_ParamDef HostSession::inputParam(const FrameRequest* frame) const {
    PF_ParamDef def{};
    def.param_type = PF_Param_LAYER;
    if (frame && frame->input) def.u.ld = frame->input->record();
    return def;
}

void HostSession::addParameter(const PF_ParamDef& def) {
    PF_ParamDef own = def;
    const auto keep = [this](const char* text) { return text ? texts.emplace_back(text).c_str() : nullptr; };
    if (own.param_type == PF_Param_POPUP) own.u.pd.u.namesptr = keep(own.u.pd.u.namesptr);
    if (own.param_type == PF_Param_CHECKBOX) own.u.bd.u.nameptr = keep(own.u.bd.u.nameptr);
    if (own.param_type == PF_Param_BUTTON) own.u.button_d.u.namesptr = keep(own.u.button_d.u.namesptr);
    addedParameters.push_back(own);
}

}  // namespace quillon::host
