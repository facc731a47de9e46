#include "host/SelectorCall.h"

#include <atomic>
#include <cstdint>
#include <cstring>
#include <functional>
#include <iterator>

#include "host/HostSession.h"

namespace quillon::host {

namespace {

thread_local SelectorCall* currentCall = nullptr;

// Callbacks on a thread that is in no selector: the next selector to end has to say it.
std::atomic<int> strayCallbacks{0};

constexpr const char* kSelectorNames[] = {
    "ABOUT",
    "GLOBAL_SETUP",
    "UNUSED_0",
    "GLOBAL_SETDOWN",
    "PARAMS_SETUP",
    "SEQUENCE_SETUP",
    "SEQUENCE_RESETUP",
    "SEQUENCE_FLATTEN",
    "SEQUENCE_SETDOWN",
    "DO_DIALOG",
    "FRAME_SETUP",
    "RENDER",
    "FRAME_SETDOWN",
    "USER_CHANGED_PARAM",
    "UPDATE_PARAMS_UI",
    "EVENT",
    "GET_EXTERNAL_DEPENDENCIES",
    "COMPLETELY_GENERAL",
    "QUERY_DYNAMIC_FLAGS",
    "AUDIO_RENDER",
    "AUDIO_SETUP",
    "AUDIO_SETDOWN",
    "ARBITRARY_CALLBACK",
    "SMART_PRE_RENDER",
    "SMART_RENDER",
};
static_assert(std::size(kSelectorNames) == PF_Cmd_SMART_RENDER + 1);

// The handle that a selector hands over to the host, by the field that the host takes it from.
PF_Handle HandedOver(PF_Cmd cmd, const PF_OutData& out) {
    switch (cmd) {
        case PF_Cmd_GLOBAL_SETUP:
            return out.global_data;
        case PF_Cmd_SEQUENCE_SETUP:
        case PF_Cmd_SEQUENCE_RESETUP:
        case PF_Cmd_SEQUENCE_FLATTEN:
            return out.sequence_data;
        case PF_Cmd_FRAME_SETUP:
            return out.frame_data;
        default:
            return nullptr;
    }
}

}  // namespace

const char* SelectorName(PF_Cmd cmd) {
    return cmd >= 0 && cmd < static_cast<PF_Cmd>(std::size(kSelectorNames)) ? kSelectorNames[cmd] : "unknown selector";
}

SelectorCall::SelectorCall(HostSession& hostSession, const Selector& theSelector, const PF_OutData& outData)
    : session(hostSession), selector(theSelector), out(outData), outer(currentCall) {
    currentCall = this;
}

SelectorCall::~SelectorCall() {
    currentCall = outer;
}

SelectorCall* SelectorCall::Current() {
    return currentCall;
}

PF_ProgPtr SelectorCall::effectRef() const {
    return session.effectRefOf(selector.instance);
}

void SelectorCall::violation(const std::string& text) const {
    session.addViolation(std::string(SelectorName(selector.cmd)) + ": " + text);
}

std::size_t SelectorCall::roomAt(const char* destination) const {
    const char* const end = out.return_msg + sizeof(out.return_msg);
    const bool isMessage = !std::less<>()(destination, out.return_msg) && std::less<>()(destination, end);
    return isMessage ? static_cast<std::size_t>(end - destination) : SIZE_MAX;
}

bool SelectorCall::serveParam(PF_ParamIndex index, PF_ParamDef& def) {
    HostInstance* const instance = selector.instance;
    if (index == 0) {
        def = session.inputParam(selector.frame);
        if (selector.frame) ledger.worldShown(selector.frame->input);
        return true;
    }
    if (!instance || !instance->hasParam(index)) return false;
    def = instance->param(index);
    ledger.worldShown(instance->layer(index));
    return true;
}

void SelectorCall::close(const PF_InData& in) {
    ledger.worldShown(selector.output);
    ledger.close(session.handles(), [this](const std::string& text) { violation(text); });
    checkHandles(in);
    checkMessage();
    if (const int strays = strayCallbacks.exchange(0))
        violation("the host was called " + std::to_string(strays) + " times from outside of a selector");
}

void SelectorCall::checkHandles(const PF_InData& in) const {
    HandleTracker& handles = session.handles();
    for (PF_Handle lost : ledger.lostHandles(handles, HandedOver(selector.cmd, out)))
        if (!session.isLossAllowed())
            violation("a handle of " + std::to_string(handles.size(lost)) +
                      " bytes is lost: neither disposed nor given to the host");
    const struct {
        const char* name;
        PF_Handle handle;
    } kFields[] = {{"in_data's sequence_data", in.sequence_data},
                   {"out_data's global_data", out.global_data},
                   {"out_data's sequence_data", out.sequence_data},
                   {"out_data's frame_data", out.frame_data}};
    for (const auto& [name, handle] : kFields)
        if (handle && !handles.isAlive(handle)) violation(std::string(name) + " is left naming no living handle");
}

void SelectorCall::checkMessage() const {
    const void* const end = std::memchr(out.return_msg, 0, sizeof(out.return_msg));
    if (!end) return violation("return_msg has no end");
    const bool isError = (out.out_flags & PF_OutFlag_DISPLAY_ERROR_MESSAGE) != 0;
    if (!isError && out.return_msg[0] == 0) return;
    session.record([&](Records& records) { records.messages.push_back({selector.cmd, out.return_msg, isError}); });
}

CallbackScope::CallbackScope(Callback which, std::int64_t key, const std::string& text)
    : call(SelectorCall::Current()) {
    if (!call) {
        ++strayCallbacks;
        answer = PF_Err_INVALID_CALLBACK;
        return;
    }
    HostSession& session = call->session;
    HostInstance* const instance = call->selector.instance;
    session.record([&](Records& records) {
        records.trace.push_back({instance ? instance->number : 0, call->selector.cmd, which, key, text});
    });
    const CallbackInfo& info = InfoOf(which);
    if (info.suite && !call->ledger.holdsSuite(info.suite))
        call->violation(std::string(info.name) + " is called without its suite");
    const auto hook = session.hooks().at.find(which);
    if (hook != session.hooks().at.end()) hook->second({which, key, instance});
    answer = session.faults().strike(which, key);
}

CallbackScope::CallbackScope(PF_ProgPtr effectRef, Callback which, std::int64_t key, const std::string& text)
    : CallbackScope(which, key, text) {
    if (call && effectRef != call->effectRef())
        answer = refuse(std::string(InfoOf(which).name) + " is called with the effect_ref of another instance");
}

PF_Err CallbackScope::refuse(const std::string& why) const {
    call->violation(why);
    return PF_Err_BAD_CALLBACK_PARAM;
}

}  // namespace quillon::host
