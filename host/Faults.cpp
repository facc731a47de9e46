#include "host/Faults.h"

namespace quillon::host {

void Faults::fail(Callback callback, PF_Err error) {
    const std::lock_guard lock(mutex);
    orders.push_back({callback, error, 0, {}});
}

void Faults::failNth(Callback callback, int nth, PF_Err error) {
    const std::lock_guard lock(mutex);
    orders.push_back({callback, error, nth, {}});
}

void Faults::failKey(Callback callback, std::int64_t key, PF_Err error) {
    const std::lock_guard lock(mutex);
    orders.push_back({callback, error, 0, key});
}

void Faults::refuseSuite(const std::string& name) {
    const std::lock_guard lock(mutex);
    refused.insert(name);
}

void Faults::offerOnly(const std::string& name, std::int32_t version) {
    const std::lock_guard lock(mutex);
    versions[name] = version;
}

void Faults::nullSuite(const std::string& name) {
    const std::lock_guard lock(mutex);
    nulls.insert(name);
}

void Faults::withoutBasicSuite() {
    const std::lock_guard lock(mutex);
    isBasicSuiteGone = true;
}

void Faults::clear() {
    const std::lock_guard lock(mutex);
    orders.clear();
    refused.clear();
    nulls.clear();
    versions.clear();
    isBasicSuiteGone = false;
}

PF_Err Faults::strike(Callback callback, std::int64_t key) {
    const std::lock_guard lock(mutex);
    PF_Err answer = PF_Err_NONE;
    for (auto order = orders.begin(); order != orders.end();) {
        const bool concerns = order->callback == callback && (!order->key || *order->key == key);
        const bool counts = concerns && order->callsLeft > 0;
        const bool strikes = concerns && (!counts || --order->callsLeft == 0);
        if (strikes && answer == PF_Err_NONE) answer = order->error;
        order = strikes && counts ? orders.erase(order) : order + 1;
    }
    return answer;
}

bool Faults::isRefused(const std::string& name) const {
    const std::lock_guard lock(mutex);
    return refused.contains(name);
}

bool Faults::isNull(const std::string& name) const {
    const std::lock_guard lock(mutex);
    return nulls.contains(name);
}

std::optional<std::int32_t> Faults::onlyVersion(const std::string& name) const {
    const std::lock_guard lock(mutex);
    const auto found = versions.find(name);
    if (found == versions.end()) return {};
    return found->second;
}

bool Faults::hasBasicSuite() const {
    const std::lock_guard lock(mutex);
    return !isBasicSuiteGone;
}

}  // namespace quillon::host
