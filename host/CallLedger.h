#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "host/HandleTracker.h"
#include "host/HostObject.h"
#include "host/World.h"
#include "hostapi/HostApi.h"

namespace quillon::host {

// What one selector took and must have given back when it ends. A selector entered from within another one has its own
// ledger. One thread.
class CallLedger {
public:
    using Complain = std::function<void(const std::string&)>;

    // What the effect does with suites, handles and controls, as it happens.
    void suiteAcquired(const std::string& name, std::int32_t version) { ++suites[{name, version}]; }
    // False when it isn't held in this version.
    bool suiteReleased(const std::string& name, std::int32_t version);
    bool holdsSuite(const std::string& name) const;
    void handleMade(PF_Handle handle) { made.push_back(handle); }
    void handleLocked(PF_Handle handle) { ++locks[handle]; }
    void handleUnlocked(PF_Handle handle) { --locks[handle]; }
    void handleDisposed(PF_Handle handle) { locks.erase(handle); }
    void paramCheckedOut(PF_Err error) { error == PF_Err_NONE ? ++checkouts : ++failedCheckouts; }
    void paramCheckedIn() { ++checkins; }

    // A world whose guards are looked at when the selector ends.
    void worldShown(std::shared_ptr<const World> world);

    // Keeps an object for the effect and gives the reference that the effect gets.
    void* objectMade(std::unique_ptr<HostObject> object);
    // Null when this selector does not have it, or when it is of another kind; a null kind fits all.
    HostObject* object(const void* reference, const char* kind) const;
    // False when this selector does not have it.
    bool objectGivenBack(const void* reference) { return objects.erase(reference) != 0; }

    // Handles that were made, still live and are not `handedOver`.
    std::vector<PF_Handle> lostHandles(const HandleTracker& handles, PF_Handle handedOver) const;

    // Everything else.
    void close(const HandleTracker& handles, const Complain& complain) const;

private:
    std::map<std::pair<std::string, std::int32_t>, int> suites;
    std::vector<PF_Handle> made;
    std::map<PF_Handle, int> locks;
    int checkouts = 0;
    int failedCheckouts = 0;
    int checkins = 0;
    std::set<std::shared_ptr<const World>> worlds;
    std::map<const void*, std::unique_ptr<HostObject>> objects;
};

}  // namespace quillon::host
