#pragma once

#include <string>

#include "host/CallLedger.h"
#include "host/Frame.h"
#include "host/HostCallback.h"
#include "hostapi/HostApi.h"

namespace quillon::host {

class HostInstance;
class HostSession;
struct SmartWorlds;

// What a selector is called with, beyond what the host always gives.
struct Selector {
    PF_Cmd cmd = 0;
    HostInstance* instance = nullptr;
    bool hasParams = false;               // the array of all controls comes along
    const FrameRequest* frame = nullptr;  // the frame that it belongs to
    PF_Handle frameData = nullptr;
    PF_Point outputOrigin{};
    A_long presetWidth = 0;  // of out_data
    A_long presetHeight = 0;
    std::shared_ptr<World> output{};  // RENDER
    void* extra = nullptr;
    SmartWorlds* smart = nullptr;  // what the smart route's callbacks serve
};

// One selector on its way through the effect. While it lives it is its thread's current call: that is how callbacks
// without an effect_ref find their session. Calls nest, since an effect may be entered again from a callback.
class SelectorCall {
public:
    SelectorCall(HostSession& hostSession, const Selector& theSelector, const PF_OutData& outData);
    ~SelectorCall();
    SelectorCall(const SelectorCall&) = delete;
    SelectorCall& operator=(const SelectorCall&) = delete;

    static SelectorCall* Current();  // null outside of any

    // Checks the ledger and reports to the session what is wrong.
    void close(const PF_InData& in);

    PF_ProgPtr effectRef() const;  // what the host calls the instance, or itself where there is none
    // Reports to the session what the effect does wrong, with the selector's name in front.
    void violation(const std::string& text) const;

    // How many bytes may be written here, the closing zero included, as far as the host knows: it knows the message.
    std::size_t roomAt(const char* destination) const;

    // The control at this host index as an effect may have it now; false without one.
    bool serveParam(PF_ParamIndex index, PF_ParamDef& def);

    HostSession& session;
    const Selector& selector;
    CallLedger ledger;

private:
    void checkMessage() const;
    void checkHandles(const PF_InData& in) const;

    const PF_OutData& out;
    SelectorCall* const outer;
};

// A callback's stay in the host. Made first thing in each: it finds the call, notes it, runs the hook and asks whether
// the callback is to fail.
class CallbackScope {
public:
    // For functions that no effect_ref comes with.
    explicit CallbackScope(Callback which, std::int64_t key = 0, const std::string& text = {});
    CallbackScope(PF_ProgPtr effectRef, Callback which, std::int64_t key = 0, const std::string& text = {});

    // What to answer at once; 0 to go on. Never 0 outside of a selector.
    PF_Err error() const { return answer; }
    explicit operator bool() const { return answer == PF_Err_NONE; }

    // False for a callback outside of any selector, which has no session.
    bool isInCall() const { return call != nullptr; }

    // The call that it belongs to; only where isInCall().
    SelectorCall* operator->() const { return call; }
    SelectorCall& operator*() const { return *call; }

    // Reports to the session and gives the code to answer with.
    PF_Err refuse(const std::string& why) const;

private:
    SelectorCall* call;
    PF_Err answer = PF_Err_NONE;
};

// As the effect API spells it, without its prefix; "unknown selector" for a number that has no name.
const char* SelectorName(PF_Cmd cmd);

}  // namespace quillon::host
