#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "host/HostCallback.h"
#include "hostapi/HostApi.h"

namespace quillon::host {

// What the host does wrong on command. An order holds until clear(); that of failNth ends when it has struck.
// A callback that returns no code fails by giving null (handles), and one that returns nothing cannot fail.
// Any thread may call.
class Faults {
public:
    static constexpr PF_Err kAnyError = PF_Err_BAD_CALLBACK_PARAM;

    void fail(Callback callback, PF_Err error = kAnyError);  // every call
    // The nth call from now on, the next being 1, and no other.
    void failNth(Callback callback, int nth, PF_Err error = kAnyError);
    // Only calls with this key, see Callback.
    void failKey(Callback callback, std::int64_t key, PF_Err error = kAnyError);

    // The suite is not to be had in any version.
    void refuseSuite(const std::string& name);
    // The suite is to be had in this version and no other.
    void offerOnly(const std::string& name, std::int32_t version);
    // Success, and a null pointer for the suite. Counts as acquired by nobody: there is nothing to release.
    void nullSuite(const std::string& name);
    // PF_InData's pica_basicP is null.
    void withoutBasicSuite();

    void clear();  // ends all orders

    // For the host: what this call is to answer at once; 0 to go on. Counts the call.
    PF_Err strike(Callback callback, std::int64_t key);
    bool isRefused(const std::string& name) const;
    bool isNull(const std::string& name) const;
    std::optional<std::int32_t> onlyVersion(const std::string& name) const;
    bool hasBasicSuite() const;

private:
    struct Order {
        Callback callback;
        PF_Err error;
        int callsLeft = 0;  // 0: strikes always
        std::optional<std::int64_t> key;
    };

    mutable std::mutex mutex;
    std::vector<Order> orders;
    std::set<std::string> refused;
    std::set<std::string> nulls;
    std::map<std::string, std::int32_t> versions;
    bool isBasicSuiteGone = false;
};

}  // namespace quillon::host
