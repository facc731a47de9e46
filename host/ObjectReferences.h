#pragma once

#include <memory>
#include <string>
#include <utility>

#include "host/HostObject.h"
#include "host/SelectorCall.h"

namespace quillon::host {

// What the registration answers, and what must be passed on afterwards.
inline constexpr AEGP_PluginID kPluginId = 4711;

// A reference that this selector has to give back.
template <class Reference>
Reference MakeReference(SelectorCall& call, HostObject object) {
    return static_cast<Reference>(call.ledger.objectMade(std::make_unique<HostObject>(std::move(object))));
}

// The object that a reference names. Null, with a report to the session, when it is not one of this kind.
inline HostObject* ObjectOf(const CallbackScope& scope, const void* reference, const char* kind) {
    HostObject* const object = scope->ledger.object(reference, kind);
    if (!object) scope->violation(std::string("what is passed as ") + kind + " is not one");
    return object;
}

inline PF_Err GiveBack(const CallbackScope& scope, const void* reference, const char* kind) {
    if (!ObjectOf(scope, reference, kind)) return PF_Err_BAD_CALLBACK_PARAM;
    scope->ledger.objectGivenBack(reference);
    return scope.error();
}

}  // namespace quillon::host
