#pragma once

#include <span>

#include "hostapi/HostApi.h"

namespace quillon::host {

// The host's functions, as tables that live until the process ends. All of them find their session by SelectorCall.

void FillInteractCallbacks(PF_InteractCallbacks& table);
PF_UtilCallbacks* UtilCallbacks();
SPBasicSuite* BasicSuite();
PF_PreRenderCallbacks* PreRenderCallbacks();
PF_SmartRenderCallbacks* SmartRenderCallbacks();

// The handle functions, which the utilities and a suite share.
PF_Handle NewHandle(A_HandleSize size);
void* LockHandle(PF_Handle handle);
void UnlockHandle(PF_Handle handle);
void DisposeHandle(PF_Handle handle);

// A suite and the hosts that have it, with one table for all its versions.
struct SuiteOffer {
    const char* name;
    std::int32_t lowestVersion;
    std::int32_t highestVersion;
    bool isInAfterEffects;
    bool isInPremiere;
    const void* table;
};

// All suites by family; a name is in one of them.
std::span<const SuiteOffer> EffectSuites();
std::span<const SuiteOffer> AegpProjectSuites();
std::span<const SuiteOffer> AegpRenderSuites();
std::span<const SuiteOffer> PremiereSuites();
std::span<const SuiteOffer> DrawbotSuites();

// A table with some of its functions and null for the rest.
template <class Table>
Table MakeTable(void (*fillTable)(Table&)) {
    Table table{};
    fillTable(table);
    return table;
}

// A key's own version and no other.
template <class Table>
constexpr SuiteOffer OfferOf(const SuiteKey<Table>& key, bool isInAfterEffects, bool isInPremiere, const Table& table) {
    return {key.name, key.version, key.version, isInAfterEffects, isInPremiere, &table};
}

}  // namespace quillon::host
