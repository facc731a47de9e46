// The host's services around controls.

#include "host/HostSession.h"
#include "host/HostTables.h"

namespace quillon::host {

namespace {

PF_Err CheckoutParam(PF_ProgPtr effectRef, PF_ParamIndex index, A_long time, A_long timeStep, A_u_long timeScale,
                     PF_ParamDef* param) {
    const CallbackScope scope(effectRef, Callback::checkoutParam, index);
    PF_Err error = scope.error();
    if (error == PF_Err_NONE && !param) error = scope.refuse("checkout_param gets no place for the control");
    if (error == PF_Err_NONE && !scope->serveParam(index, *param)) error = PF_Err_INVALID_INDEX;
    if (!scope.isInCall()) return error;
    const auto& valueAt = scope->session.hooks().valueAt;
    if (error == PF_Err_NONE && valueAt && scope->selector.instance)
        valueAt(*scope->selector.instance, index, time, timeScale, *param);
    scope->ledger.paramCheckedOut(error);
    scope->session.record([&](Records& records) {
        records.paramCheckouts.push_back({index, time, timeStep, timeScale, error});
    });
    return error;
}

PF_Err CheckinParam(PF_ProgPtr effectRef, PF_ParamDef* param) {
    const CallbackScope scope(effectRef, Callback::checkinParam);
    if (scope.isInCall()) scope->ledger.paramCheckedIn();
    if (scope && !param) return scope.refuse("checkin_param gets no control");
    return scope.error();
}

PF_Err AddParam(PF_ProgPtr effectRef, PF_ParamIndex index, PF_ParamDef* def) {
    SelectorCall* const call = SelectorCall::Current();
    const CallbackScope scope(effectRef, Callback::addParam, call ? std::ssize(call->session.parameters()) + 1 : 0);
    if (!scope) return scope.error();
    if (scope->selector.cmd != PF_Cmd_PARAMS_SETUP) return scope.refuse("add_param outside of PARAMS_SETUP");
    if (index != -1 || !def) return scope.refuse("add_param takes -1 and a control");
    scope->session.addParameter(*def);
    return PF_Err_NONE;
}

PF_Err RegisterUi(PF_ProgPtr effectRef, PF_CustomUIInfo* info) {
    const CallbackScope scope(effectRef, Callback::registerUI, info ? info->events : 0);
    if (!scope) return scope.error();
    if (!info) return scope.refuse("register_ui gets nothing to register");
    scope->session.record([&](Records& records) { records.registeredUIs.push_back(*info); });
    return PF_Err_NONE;
}

PF_Err AbortRequested(PF_ProgPtr effectRef) {
    return CallbackScope(effectRef, Callback::abort).error();
}

PF_Err Progress(PF_ProgPtr effectRef, A_long, A_long) {
    return CallbackScope(effectRef, Callback::progress).error();
}

}  // namespace

void FillInteractCallbacks(PF_InteractCallbacks& table) {
    table.checkout_param = CheckoutParam;
    table.checkin_param = CheckinParam;
    table.add_param = AddParam;
    table.register_ui = RegisterUi;
    table.abort = AbortRequested;
    table.progress = Progress;
}

}  // namespace quillon::host
