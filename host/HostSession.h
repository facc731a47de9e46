#pragma once

#include <cstddef>
#include <deque>
#include <list>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "host/EffectModule.h"
#include "host/Faults.h"
#include "host/Frame.h"
#include "host/HandleTracker.h"
#include "host/Hooks.h"
#include "host/HostInstance.h"
#include "host/HostSettings.h"
#include "host/Records.h"
#include "host/SelectorCall.h"

namespace quillon::host {

// A selector's code, and its two records as the effect left them.
struct Answer {
    PF_Err error = PF_Err_NONE;
    PF_InData in{};
    PF_OutData out{};
};

// A host with one effect loaded. Everything that the effect does is held against the ledger at the end of each
// selector; violations() reports what is wrong, and nothing stops.
//
// Several threads may send selectors at once, each for different instances. Settings, faults and hooks are set, and
// records read, while no selector runs. A session ends without a word to the effect: what is to be set down is set
// down before.
class HostSession {
public:
    explicit HostSession(EffectModule effect, HostSettings hostSettings = {});
    ~HostSession();
    HostSession(const HostSession&) = delete;
    HostSession& operator=(const HostSession&) = delete;

    // Walks as a real host takes them. They throw std::runtime_error, with selector and code, as soon as the effect
    // answers with an error; a frame's errors are in its result.
    void start();           // GLOBAL_SETUP, PARAMS_SETUP
    HostInstance& apply();  // SEQUENCE_SETUP, UPDATE_PARAMS_UI
    FrameResult renderFrame(HostInstance& instance, const FrameRequest& request);
    std::vector<std::byte> save(HostInstance& instance);       // FLATTEN; the flat bytes, and the instance lives on
    HostInstance& load(std::span<const std::byte> flatBytes);  // RESETUP, UPDATE_PARAMS_UI; values are the defaults
    HostInstance& duplicate(HostInstance& instance);           // both; values are the original's
    void remove(HostInstance& instance);                       // SEQUENCE_SETDOWN; the instance is gone then

    // An instance that the effect does not know yet. Lives until the session ends.
    HostInstance& newInstance();

    // The selectors one by one.
    Answer about();
    Answer globalSetup();  // a second one replaces the global data
    Answer globalSetdown();
    Answer paramsSetup();  // starts the list of controls anew
    Answer sequenceSetup(HostInstance& instance);
    Answer sequenceResetup(HostInstance& instance);  // of the block in sequenceData, which the host disposes afterwards
    Answer sequenceFlatten(HostInstance& instance);  // the flat block is the instance's flatData then
    Answer sequenceSetdown(HostInstance& instance);
    Answer userChangedParam(HostInstance& instance, PF_ParamIndex index);
    // Not sent to an effect that has not set PF_OutFlag_SEND_UPDATE_PARAMS_UI: error 0 then.
    Answer updateParamsUI(HostInstance& instance);
    Answer event(HostInstance& instance, PF_EventExtra& extra);
    // Any selector, with the ledger kept but nothing taken over from what it leaves.
    Answer send(const Selector& selector);

    // The parts of the host. Faults and hooks may change at any time outside of a selector.
    const HostSettings& settings() const { return chosenSettings; }
    Faults& faults() { return plannedFaults; }
    Hooks& hooks() { return testHooks; }
    HandleTracker& handles() { return handleTracker; }
    PF_Handle globalData() const { return globalDataHandle; }

    // The controls that the effect has added, host index 1 first. Texts are the session's own copies.
    const std::vector<PF_ParamDef>& parameters() const { return addedParameters; }

    // What the effect has asked, and what it has done wrong, in words; both grow until they are cleared.
    const Records& records() const { return keptRecords; }
    void clearRecords();
    std::vector<std::string> violations() const;
    void clearViolations();

    // The next losses of a handle, this many, are no violation: for the cases where the effect is meant to lose one.
    void allowLostHandles(int count);

    // A world with the session's padding and pixel aspect.
    std::shared_ptr<World> newWorld(A_long width, A_long height, int bitDepth) const;

    // For the host's own callbacks.
    void addViolation(const std::string& text);
    bool isLossAllowed();
    template <class Note>
    void record(Note note) {
        if (!chosenSettings.keepsRecords) return;
        const std::lock_guard lock(mutex);
        note(keptRecords);
    }
    PF_ProgPtr effectRefOf(const HostInstance* instance) const;
    PF_ParamDef inputParam(const FrameRequest* frame) const;
    void addParameter(const PF_ParamDef& def);
    void* moduleHandle() const { return module.handle(); }

private:
    void fillIn(PF_InData& in, const Selector& selector) const;
    void adoptSequence(HostInstance& instance, const Answer& answer);
    Answer checked(PF_Cmd cmd, const Answer& answer) const;

    const EffectModule module;
    const HostSettings chosenSettings;
    Faults plannedFaults;
    Hooks testHooks;
    HandleTracker handleTracker;
    PF_Handle globalDataHandle = nullptr;
    PF_OutFlags outFlags = 0;
    PF_OutFlags2 outFlags2 = 0;
    std::vector<PF_ParamDef> addedParameters;
    A_long claimedParams = 1;  // num_params as the effect set it, which may be ahead of the list
    std::deque<std::string> texts;

    mutable std::mutex mutex;  // of what follows
    std::list<HostInstance> instances;
    int lastInstance = 0;
    Records keptRecords;
    std::vector<std::string> seenViolations;
    int allowedLosses = 0;
};

}  // namespace quillon::host
