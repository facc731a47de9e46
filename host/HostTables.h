#pragma once

#include <span>

#include "hostapi/HostApi.h"

namespace quillon::host {

// The host's functions, as tables that live as long as the process. All of them find their session by SelectorCall.

void fillInteractCallbacks(PF_InteractCallbacks& table);
PF_UtilCallbacks* utilCallbacks();
SPBasicSuite* basicSuite();
PF_PreRenderCallbacks* preRenderCallbacks();
PF_SmartRenderCallbacks* smartRenderCallbacks();

// The handle functions, which the utilities and a suite share.
PF_Handle newHandle(A_HandleSize size);
void* lockHandle(PF_Handle handle);
void unlockHandle(PF_Handle handle);
void disposeHandle(PF_Handle handle);

struct SuiteOffer {
    const char* name;
    std::int32_t lowestVersion;
    std::int32_t highestVersion;
    bool isInAfterEffects;
    bool isInPremiere;
    const void* table;
};

std::span<const SuiteOffer> effectSuites();
std::span<const SuiteOffer> aegpProjectSuites();
std::span<const SuiteOffer> aegpRenderSuites();
std::span<const SuiteOffer> premiereSuites();
std::span<const SuiteOffer> drawbotSuites();

// A table with some of its functions and null for the rest.
template <class Table>
Table makeTable(void (*fillTable)(Table&)) {
    Table table{};
    fillTable(table);
    return table;
}

// A key's own version and no other.
template <class Table>
constexpr SuiteOffer offerOf(const SuiteKey<Table>& key, bool isInAfterEffects, bool isInPremiere, const Table& table) {
    return {key.name, key.version, key.version, isInAfterEffects, isInPremiere, &table};
}

}  // namespace quillon::host
