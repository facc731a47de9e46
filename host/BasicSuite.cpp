// The suite that hands out all others.

#include <algorithm>
#include <optional>
#include <string>

#include "host/HostSession.h"
#include "host/HostTables.h"

namespace quillon::host {

namespace {

// The hosts' own code is not one of the effect API's, so that an effect that passes it on is seen.
constexpr SPErr kSuiteNotFound = 0x5375;

const SuiteOffer* FindOffer(const std::string& name, bool isPremiere) {
    for (const auto offers :
         {EffectSuites(), AegpProjectSuites(), AegpRenderSuites(), PremiereSuites(), DrawbotSuites()})
        for (const SuiteOffer& offer : offers)
            if (name == offer.name && (isPremiere ? offer.isInPremiere : offer.isInAfterEffects)) return &offer;
    return nullptr;
}

bool IsOffered(const SuiteOffer& offer, std::int32_t version, const Faults& faults) {
    if (faults.isRefused(offer.name)) return false;
    if (const std::optional<std::int32_t> only = faults.onlyVersion(offer.name)) return version == *only;
    return version >= offer.lowestVersion && version <= offer.highestVersion;
}

SPErr AcquireSuite(const char* name, std::int32_t version, const void** suite) {
    const std::string text = name ? name : "";
    const CallbackScope scope(Callback::acquireSuite, version, text);
    if (!scope) return scope.error();
    if (!suite) return scope.refuse("a suite is acquired into nowhere");
    HostSession& session = scope->session;
    const SuiteOffer* const offer = FindOffer(text, session.settings().kind == HostKind::premiere);
    if (!offer || !IsOffered(*offer, version, session.faults())) return kSuiteNotFound;
    *suite = session.faults().isNull(text) ? nullptr : offer->table;
    if (*suite) scope->ledger.suiteAcquired(text, version);
    return PF_Err_NONE;
}

SPErr ReleaseSuite(const char* name, std::int32_t version) {
    const std::string text = name ? name : "";
    const CallbackScope scope(Callback::releaseSuite, version, text);
    if (!scope.isInCall()) return scope.error();
    if (!scope->ledger.suiteReleased(text, version))
        return scope.refuse("suite \"" + text + "\" " + std::to_string(version) +
                            " is released but not held in this version");
    return scope.error();
}

}  // namespace

SPBasicSuite* BasicSuite() {
    static SPBasicSuite table = [] {
        SPBasicSuite made{};
        made.AcquireSuite = AcquireSuite;
        made.ReleaseSuite = ReleaseSuite;
        return made;
    }();
    return &table;
}

}  // namespace quillon::host
