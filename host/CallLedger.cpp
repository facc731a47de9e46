#include "host/CallLedger.h"

#include <algorithm>

namespace quillon::host {

bool CallLedger::suiteReleased(const std::string& name, std::int32_t version) {
    const auto held = suites.find({name, version});
    if (held == suites.end() || held->second == 0) return false;
    --held->second;
    return true;
}

bool CallLedger::holdsSuite(const std::string& name) const {
    return std::ranges::any_of(suites, [&](const auto& held) { return held.first.first == name && held.second > 0; });
}

void CallLedger::worldShown(std::shared_ptr<const World> world) {
    if (world) worlds.insert(std::move(world));
}

void* CallLedger::objectMade(std::unique_ptr<HostObject> object) {
    HostObject* const reference = object.get();
    objects[reference] = std::move(object);
    return reference;
}

HostObject* CallLedger::object(const void* reference, const char* kind) const {
    const auto found = objects.find(reference);
    if (found == objects.end()) return nullptr;
    return !kind || found->second->kind == kind ? found->second.get() : nullptr;
}

std::vector<PF_Handle> CallLedger::lostHandles(const HandleTracker& handles, PF_Handle handedOver) const {
    std::vector<PF_Handle> lost;
    std::ranges::copy_if(made, std::back_inserter(lost),
                         [&](PF_Handle handle) { return handle != handedOver && handles.isAlive(handle); });
    return lost;
}

void CallLedger::close(const HandleTracker& handles, const Complain& complain) const {
    for (const auto& [key, count] : suites)
        if (count != 0)
            complain("suite \"" + key.first + "\" " + std::to_string(key.second) + " is not released (" +
                     std::to_string(count) + " times)");
    for (const auto& [handle, count] : locks)
        if (count != 0 && handles.isAlive(handle))
            complain("a handle of " + std::to_string(handles.size(handle)) + " bytes is left with " +
                     std::to_string(count) + " locks more than before");
    // After a failing checkout the effect makes no further one, but checks in for each control: more is no fault then.
    const bool isBalanced = failedCheckouts == 0 ? checkins == checkouts : checkins >= checkouts + failedCheckouts;
    if (!isBalanced)
        complain(std::to_string(checkouts) + " controls checked out, " + std::to_string(failedCheckouts) +
                 " not to be had, " + std::to_string(checkins) + " checked in");
    for (const auto& world : worlds)
        if (!world->areGuardsIntact())
            complain("guard bytes of a world of " + std::to_string(world->width()) + " by " +
                     std::to_string(world->height()) + " at " + std::to_string(world->bitDepth()) +
                     " bits are overwritten");
    for (const auto& [reference, object] : objects)
        complain(std::string("a host's ") + object->kind + " is not given back");
}

}  // namespace quillon::host
