// A session's selectors and walks: what is sent when, and what the host takes over from the answer.

#include <algorithm>
#include <stdexcept>

#include "host/ClassicFrame.h"
#include "host/HostSession.h"
#include "host/SmartFrame.h"

namespace quillon::host {

Answer HostSession::about() {
    return send({.cmd = PF_Cmd_ABOUT});
}

Answer HostSession::globalSetup() {
    const Answer answer = send({.cmd = PF_Cmd_GLOBAL_SETUP});
    outFlags = answer.out.out_flags;
    outFlags2 = answer.out.out_flags2;
    if (answer.out.global_data != globalDataHandle) {
        if (globalDataHandle) handleTracker.disposeIfAlive(globalDataHandle);
        globalDataHandle = answer.out.global_data;
    }
    return answer;
}

Answer HostSession::globalSetdown() {
    const Answer answer = send({.cmd = PF_Cmd_GLOBAL_SETDOWN});
    if (globalDataHandle) handleTracker.disposeIfAlive(globalDataHandle);
    globalDataHandle = nullptr;
    return answer;
}

Answer HostSession::paramsSetup() {
    addedParameters.clear();
    const Answer answer = send({.cmd = PF_Cmd_PARAMS_SETUP});
    claimedParams = answer.out.num_params;
    return answer;
}

Answer HostSession::sequenceSetup(HostInstance& instance) {
    const Answer answer = send({.cmd = PF_Cmd_SEQUENCE_SETUP, .instance = &instance});
    adoptSequence(instance, answer);
    return answer;
}

Answer HostSession::sequenceResetup(HostInstance& instance) {
    const Answer answer = send({.cmd = PF_Cmd_SEQUENCE_RESETUP, .instance = &instance});
    if (answer.error != PF_Err_NONE) return answer;
    // The block that came from the host is the host's to end.
    if (instance.sequenceData && instance.sequenceData != answer.out.sequence_data) {
        handleTracker.disposeIfAlive(instance.sequenceData);
        instance.sequenceData = nullptr;
    }
    adoptSequence(instance, answer);
    return answer;
}

void HostSession::adoptSequence(HostInstance& instance, const Answer& answer) {
    if (instance.sequenceData && !handleTracker.isAlive(instance.sequenceData)) instance.sequenceData = nullptr;
    const PF_Handle given = answer.out.sequence_data;
    if (!given || given == instance.sequenceData) return;
    if (instance.sequenceData) handleTracker.disposeIfAlive(instance.sequenceData);
    instance.sequenceData = given;
}

Answer HostSession::sequenceFlatten(HostInstance& instance) {
    const Answer answer = send({.cmd = PF_Cmd_SEQUENCE_FLATTEN, .instance = &instance});
    if (instance.flatData) handleTracker.disposeIfAlive(instance.flatData);
    const PF_Handle given = answer.out.sequence_data;
    instance.flatData = given == instance.sequenceData ? nullptr : given;
    return answer;
}

Answer HostSession::sequenceSetdown(HostInstance& instance) {
    const Answer answer = send({.cmd = PF_Cmd_SEQUENCE_SETDOWN, .instance = &instance});
    if (!instance.sequenceData) return answer;
    const bool isAlive = handleTracker.isAlive(instance.sequenceData);
    if (isAlive && answer.error != PF_Err_NONE) return answer;
    if (isAlive) {
        addViolation("SEQUENCE_SETDOWN: the instance's block is not disposed");
        handleTracker.disposeIfAlive(instance.sequenceData);
    }
    instance.sequenceData = nullptr;
    return answer;
}

Answer HostSession::userChangedParam(HostInstance& instance, PF_ParamIndex index) {
    PF_UserChangedParamExtra extra{index};
    return send({.cmd = PF_Cmd_USER_CHANGED_PARAM, .instance = &instance, .hasParams = true, .extra = &extra});
}

Answer HostSession::updateParamsUI(HostInstance& instance) {
    if (!(outFlags & PF_OutFlag_SEND_UPDATE_PARAMS_UI)) return {};
    return send({.cmd = PF_Cmd_UPDATE_PARAMS_UI, .instance = &instance, .hasParams = true});
}

Answer HostSession::event(HostInstance& instance, PF_EventExtra& extra) {
    return send({.cmd = PF_Cmd_EVENT, .instance = &instance, .hasParams = true, .extra = &extra});
}

Answer HostSession::checked(PF_Cmd cmd, const Answer& answer) const {
    if (answer.error == PF_Err_NONE) return answer;
    std::string text = std::string(SelectorName(cmd)) + " answered " + std::to_string(answer.error);
    const char* const message = answer.out.return_msg;
    const char* const end = std::find(message, message + sizeof(answer.out.return_msg), '\0');
    if (end != message) text += ": " + std::string(message, end);
    throw std::runtime_error(text);
}

void HostSession::start() {
    checked(PF_Cmd_GLOBAL_SETUP, globalSetup());
    checked(PF_Cmd_PARAMS_SETUP, paramsSetup());
}

HostInstance& HostSession::newInstance() {
    const std::lock_guard lock(mutex);
    return instances.emplace_back(*this, ++lastInstance);
}

HostInstance& HostSession::apply() {
    HostInstance& instance = newInstance();
    checked(PF_Cmd_SEQUENCE_SETUP, sequenceSetup(instance));
    checked(PF_Cmd_UPDATE_PARAMS_UI, updateParamsUI(instance));
    return instance;
}

std::vector<std::byte> HostSession::save(HostInstance& instance) {
    checked(PF_Cmd_SEQUENCE_FLATTEN, sequenceFlatten(instance));
    if (!instance.flatData) return {};
    std::vector<std::byte> flatBytes = handleTracker.bytes(instance.flatData);
    handleTracker.disposeIfAlive(instance.flatData);
    instance.flatData = nullptr;
    return flatBytes;
}

HostInstance& HostSession::load(std::span<const std::byte> flatBytes) {
    HostInstance& instance = newInstance();
    if (!flatBytes.empty()) instance.sequenceData = handleTracker.makeWith(flatBytes);
    checked(PF_Cmd_SEQUENCE_RESETUP, sequenceResetup(instance));
    checked(PF_Cmd_UPDATE_PARAMS_UI, updateParamsUI(instance));
    return instance;
}

HostInstance& HostSession::duplicate(HostInstance& instance) {
    HostInstance& copy = newInstance();
    copy.copyValues(instance);
    const std::vector<std::byte> flatBytes = save(instance);
    if (!flatBytes.empty()) copy.sequenceData = handleTracker.makeWith(flatBytes);
    checked(PF_Cmd_SEQUENCE_RESETUP, sequenceResetup(copy));
    checked(PF_Cmd_UPDATE_PARAMS_UI, updateParamsUI(copy));
    return copy;
}

void HostSession::remove(HostInstance& instance) {
    checked(PF_Cmd_SEQUENCE_SETDOWN, sequenceSetdown(instance));
    const std::lock_guard lock(mutex);
    instances.remove_if([&](const HostInstance& other) { return &other == &instance; });
}

FrameResult HostSession::renderFrame(HostInstance& instance, const FrameRequest& request) {
    const bool isSmart =
        chosenSettings.routeInUse() == Route::smart && (outFlags2 & PF_OutFlag2_SUPPORTS_SMART_RENDER) != 0;
    return isSmart ? SmartFrame(instance, request).walk() : ClassicFrame(instance, request).walk();
}

}  // namespace quillon::host
